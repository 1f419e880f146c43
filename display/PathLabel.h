#pragma once

#include <QLabel>

/// A label for a path of any length: what does not fit is left out in the middle, and the whole of
/// it is in the tool tip. The text is never taken for markup.
class PathLabel : public QLabel {
    Q_OBJECT

public:
    explicit PathLabel(QWidget* parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
};
