#pragma once

#include <QApplication>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <utility>

/// The operator's answer to the next modal dialog of the given class: waits until one is open, then
/// runs the answer on it; an answer that leaves the dialog open has it cancelled. Construct it
/// before the call that opens the dialog; answered() tells afterwards whether there was one.
template <typename Dialog>
class ModalDialog {
public:
    explicit ModalDialog(std::function<void(Dialog&)> answer) : m_answer(std::move(answer)) {
        QObject::connect(&m_poll, &QTimer::timeout, &m_poll, [this] { look(); });
        m_poll.start(1);
    }

    bool answered() const { return m_answered; }

private:
    void look() {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        m_poll.stop();
        m_answered = true;
        const QPointer<Dialog> guard(dialog);
        m_answer(*dialog);
        if (guard && guard->isVisible())
            guard->reject();
    }

    std::function<void(Dialog&)> m_answer;
    QTimer m_poll;
    bool m_answered = false;
};
