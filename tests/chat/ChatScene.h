#pragma once

#include "ChatWindow.h"

#include <QComboBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>

#include <memory>

/// A chat window with an owner and an empty store, and what a test looks at and works with.
class ChatScene {
public:
    ChatScene() {
        owner.show();
        settings.clear();
        reopen();
    }

    /// As in the next run of the program.
    void reopen() {
        chat.reset();
        chat = std::make_unique<ChatWindow>(&settings, &owner);
    }
    QComboBox* input() const { return chat->findChild<QComboBox*>(); }
    QPushButton* sendButton() const { return chat->findChild<QPushButton*>(); }
    QTextEdit* transcript() const { return chat->findChild<QTextEdit*>(); }
    QStringList lines() const { return transcript()->toPlainText().split(QLatin1Char('\n')); }
    /// The lines without the time stamps that they all must have.
    QStringList unstamped() const {
        static const QRegularExpression stamp(QStringLiteral("^[0-2]\\d:[0-5]\\d:[0-5]\\d "));
        QStringList texts;
        for (const QString& line : lines())
            texts.append(line.contains(stamp) ? line.mid(9) : QStringLiteral("no stamp: ") + line);
        return texts;
    }
    QTextCharFormat formatOf(int line) const {
        return transcript()->document()->findBlockByNumber(line).begin().fragment().charFormat();
    }
    QColor colorOf(int line) const { return formatOf(line).foreground().color(); }
    void showActive() const {
        chat->show();
        chat->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(chat.get()));
    }
    void type(const QString& text) const { QTest::keyClicks(chat->focusWidget(), text); }

    QWidget owner;
    QSettings settings{QStringLiteral("VESTRA"), QStringLiteral("group7100")};
    std::unique_ptr<ChatWindow> chat;
};
