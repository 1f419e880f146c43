#pragma once

#include <QObject>

#include <functional>

class QWidget;

/// Calls something once, from the event loop, when a widget has been painted for the first time:
/// for what the first picture of a window need not wait for. A widget that opens where nobody sees
/// it is not painted: then it is called after a moment all the same. Belongs to the widget. GUI
/// thread.
class FirstPaint : public QObject {
    Q_OBJECT

public:
    FirstPaint(QWidget* widget, std::function<void()> then);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void call();

    std::function<void()> m_then;
};
