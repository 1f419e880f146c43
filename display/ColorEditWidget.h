#pragma once

#include <QColor>
#include <QWidget>

/// A sample of one colour that the operator can click, or reach by keyboard and press Space or
/// Return on, to choose another one.
///
/// Holds no valid colour until it is given one, and none again when the operator cancels the
/// colour dialog: what the dialog returns is taken as it is. That is wanted; a sample without a
/// colour is black, and so is what it is applied to.
class ColorEditWidget : public QWidget {
    Q_OBJECT

public:
    explicit ColorEditWidget(QWidget* parent = nullptr);

    void setColor(QColor color);
    QColor color() const { return m_color; }

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void choose();

    QColor m_color;
};
