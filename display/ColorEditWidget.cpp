#include "ColorEditWidget.h"

#include <QColorDialog>
#include <QKeyEvent>
#include <QPainter>

ColorEditWidget::ColorEditWidget(QWidget* parent) : QWidget(parent) {
    setMinimumSize(160, 36);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setAutoFillBackground(true);
    setColor({});
}

void ColorEditWidget::setColor(QColor color) {
    m_color = color;
    setPalette(QPalette(color));
    setAccessibleDescription(color.isValid() ? color.name() : tr("no color"));
    update();
}

void ColorEditWidget::choose() {
    setColor(QColorDialog::getColor(m_color, this));
}

void ColorEditWidget::mouseReleaseEvent(QMouseEvent* /*event*/) {
    choose();
}

void ColorEditWidget::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        choose();
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

void ColorEditWidget::paintEvent(QPaintEvent* /*event*/) {
    if (!hasFocus())
        return;
    // The ring of many styles tints what it surrounds, and here that is the colour to be judged.
    constexpr int middle = 128;
    const bool dark = palette().color(backgroundRole()).lightness() < middle;
    QPainter painter(this);
    painter.setPen(QPen(dark ? Qt::white : Qt::black, 1, Qt::DashLine));
    painter.drawRect(rect().adjusted(3, 3, -4, -4));
}
