#pragma once

#include <QLabel>
#include <QStringList>

/// One line of plain text in several wordings, or in one, setText(). Shows the first for which
/// there is room; where there is none for the last either, that one without its middle. text() is
/// the first, for which the label would like to have room; it needs none.
class FittingLabel : public QLabel {
    Q_OBJECT

public:
    using QLabel::QLabel;

    /// From the longest to the shortest.
    void setWordings(const QStringList& wordings);
    /// What is shown in a label of that width.
    QString shown(int width) const;

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QStringList m_wordings;
};
