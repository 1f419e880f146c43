#include "ColorEditWidget.h"

#include <QColorDialog>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>

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
    QPainter painter(this);
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.rect.adjust(2, 2, -2, -2);
    option.backgroundColor = palette().color(backgroundRole());
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}
