#pragma once

#include <QPaintEvent>
#include <QRegion>
#include <QVector>
#include <QWidget>

/// Remembers what was painted of a widget.
class PaintWatch : public QObject {
public:
    explicit PaintWatch(QWidget& widget) { widget.installEventFilter(this); }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            regions << static_cast<QPaintEvent*>(event)->region();
        return false;
    }

    QVector<QRegion> regions;
};
