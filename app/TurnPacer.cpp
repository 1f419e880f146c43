#include "TurnPacer.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEvent>

#include <thread>
#include <utility>

TurnPacer::TurnPacer(Sleep sleep) : m_sleep(std::move(sleep)) {
    const QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, &TurnPacer::pause);
    connect(dispatcher, &QAbstractEventDispatcher::awake, this,
            [this] { m_pacing.turnBegins(TurnPacing::Clock::now()); });
    QCoreApplication::instance()->installEventFilter(this);
}

bool TurnPacer::eventFilter(QObject* object, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::Resize:
        m_pacing.operatorActs(TurnPacing::Clock::now());
        break;
    default:
        break;
    }
    return QObject::eventFilter(object, event);
}

void TurnPacer::pause() const {
    const auto length = m_pacing.pauseAfterTurn(TurnPacing::Clock::now());
    if (length.count() > 0)
        m_sleep(length);
}

void TurnPacer::sleepFor(std::chrono::microseconds length) {
    std::this_thread::sleep_for(length);
}
