#pragma once

#include "LetterButton.h"

#include <QStringList>

/// A key with a label of its own for each modifier state ("del", "delln").
class FlexLabel : public LetterButton {
    Q_OBJECT

public:
    using LetterButton::LetterButton;

    /// One label a state; a state beyond the end of the list leaves the label as it is.
    void setLabels(const QStringList& labels) { m_labels = labels; }

protected:
    QString label(unsigned char state) const override;
    QString spoken(unsigned char state) const override { return label(state); }

private:
    QStringList m_labels;
};
