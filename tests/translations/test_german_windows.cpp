#include "CaptureControl.h"
#include "ChatWindow.h"
#include "ConnectionWidget.h"
#include "GroupPrefs.h"
#include "GroupWindow.h"
#include "HelpLinks.h"
#include "Keyboard.h"
#include "LCD7100.h"
#include "LCDColorPicker.h"
#include "NewConnection.h"
#include "TestEnvironment.h"
#include "TranslationFile.h"
#include "Translations.h"
#include "UpdateWindow.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QSettings>
#include <QToolButton>

#include <functional>
#include <memory>

namespace {

using Make = std::function<std::unique_ptr<QWidget>()>;

/// Everything in a window that a person reads, points at, or has read out.
QStringList textsOf(const QWidget& window) {
    QStringList texts;
    const auto addWidget = [&texts](const QWidget& widget) {
        texts << widget.windowTitle() << widget.toolTip() << widget.statusTip()
              << widget.accessibleName() << widget.accessibleDescription();
        if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
            texts << button->text();
        if (const auto* label = qobject_cast<const QLabel*>(&widget))
            texts << label->text();
        if (const auto* group = qobject_cast<const QGroupBox*>(&widget))
            texts << group->title();
        if (const auto* menu = qobject_cast<const QMenu*>(&widget))
            texts << menu->title();
        if (const auto* box = qobject_cast<const QComboBox*>(&widget)) {
            for (int i = 0; i < box->count(); ++i)
                texts << box->itemText(i);
        }
    };
    addWidget(window);
    for (const QWidget* const widget : window.findChildren<QWidget*>())
        addWidget(*widget);
    for (const QAction* const action : window.findChildren<QAction*>())
        texts << action->text() << action->toolTip() << action->statusTip();
    texts.removeAll(QString());
    texts.removeDuplicates();
    return texts;
}

/// What a text looks like once it is filled in.
QRegularExpression filledIn(const QString& text) {
    QString pattern = QRegularExpression::escape(text);
    return QRegularExpression(QRegularExpression::anchoredPattern(
        pattern.replace(QRegularExpression(QStringLiteral("\\\\%\\d")), QStringLiteral(".*"))));
}

/// The widgets whose text does not fit into them.
QStringList clippedIn(const QWidget& window) {
    QStringList clipped;
    const auto judge = [&clipped](const QWidget& widget, const QString& text, int needed) {
        if (needed > widget.width())
            clipped << QStringLiteral("%1 \"%2\" needs %3, has %4")
                           .arg(widget.objectName(), text)
                           .arg(needed)
                           .arg(widget.width());
    };
    for (const QAbstractButton* const button : window.findChildren<QAbstractButton*>()) {
        const auto* const tool = qobject_cast<const QToolButton*>(button);
        const bool textShows = !tool || tool->toolButtonStyle() != Qt::ToolButtonIconOnly;
        if (button->isVisible() && textShows && !button->text().isEmpty())
            judge(*button, button->text(),
                  button->fontMetrics().size(Qt::TextShowMnemonic, button->text()).width());
    }
    for (const QLabel* const label : window.findChildren<QLabel*>()) {
        if (label->isVisible() && !label->wordWrap())
            judge(*label, label->text(), label->minimumSizeHint().width());
        else if (label->isVisible() && label->heightForWidth(label->width()) > label->height())
            clipped << label->text();
    }
    for (const QGroupBox* const group : window.findChildren<QGroupBox*>()) {
        if (group->isVisible())
            judge(*group, group->title(), group->fontMetrics().horizontalAdvance(group->title()));
    }
    return clipped;
}

/// The letters that choose entries of a menu, entries of the same letter once more.
QStringList sharedMnemonics(const QList<QAction*>& entries) {
    static const QRegularExpression mnemonic(QStringLiteral("&([^&\\s])"));
    QStringList seen;
    QStringList shared;
    for (const QAction* const entry : entries) {
        const QString letter = mnemonic.match(entry->text()).captured(1).toLower();
        if (!letter.isEmpty() && seen.contains(letter))
            shared << entry->text();
        seen << letter;
    }
    return shared;
}

} // namespace

class GermanWindowsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        Q_INIT_RESOURCE(group);
        Q_INIT_RESOURCE(console);
        newsSource.clear();
        for (const TranslatedText& text :
             readTranslationFile(QStringLiteral(GX_TRANSLATIONS "/gx7100group_de.ts"))) {
            m_german.append(filledIn(text.translations.constFirst()));
            if (text.translations.constFirst() != text.source)
                m_english.append(filledIn(text.source));
        }
        QVERIFY(m_english.size() > 150);
    }

    void everyWindowIsGermanAndWhole_data() {
        QTest::addColumn<Make>("make");

        const auto row = [](const char* name, const Make& make) { QTest::newRow(name) << make; };
        row("group window", [] { return std::make_unique<GroupWindow>(); });
        row("tile", [] { return std::make_unique<ConnectionWidget>(); });
        row("new connection", [] { return std::make_unique<NewConnection>(); });
        row("preferences", [] { return std::make_unique<GroupPrefs>(); });
        row("keypad", [] { return std::make_unique<Keyboard>(); });
        row("chat", [this] { return std::make_unique<ChatWindow>(&m_settings, nullptr); });
        row("capture", [] { return std::make_unique<CaptureControl>(nullptr, nullptr); });
        row("screen", [] { return std::make_unique<LCD7100>(); });
        row("updates", [] {
            return std::make_unique<UpdateWindow>(QStringLiteral("file:///"), QStringLiteral("t"),
                                                  QStringLiteral("2013.2"), nullptr);
        });
        row("colours", [] {
            auto screen = std::make_unique<LCD7100>();
            screen->setObjectName(QStringLiteral("screen of the picker"));
            auto* const picker = new LCDColorPicker(screen.get());
            picker->setParent(screen.get(), Qt::Dialog);
            picker->show();
            return screen;
        });
    }

    void everyWindowIsGermanAndWhole() {
        QFETCH(Make, make);
        const Translations german({QStringLiteral("de")});
        const auto window = make();
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));

        int translated = 0;
        for (const QString& text : textsOf(*window)) {
            const bool isGerman = matches(m_german, text);
            translated += isGerman ? 1 : 0;
            QVERIFY2(isGerman || !matches(m_english, text), qPrintable(text));
        }
        QVERIFY2(translated > 0, "nothing of it is translated");
        const QStringList clipped = clippedIn(*window);
        QVERIFY2(clipped.isEmpty(), qPrintable(clipped.join(u'\n')));
    }

    void englishWindowsAreWholeToo_data() { everyWindowIsGermanAndWhole_data(); }

    void englishWindowsAreWholeToo() {
        QFETCH(Make, make);
        const auto window = make();
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        const QStringList clipped = clippedIn(*window);
        QVERIFY2(clipped.isEmpty(), qPrintable(clipped.join(u'\n')));
    }

    void everyEntryOfAMenuHasALetterOfItsOwn_data() {
        QTest::addColumn<QString>("language");
        QTest::newRow("English") << "en";
        QTest::newRow("German") << "de";
    }

    void everyEntryOfAMenuHasALetterOfItsOwn() {
        QFETCH(QString, language);
        const Translations translations({language});
        const GroupWindow window;
        QCOMPARE(sharedMnemonics(window.menuBar()->actions()), QStringList());
        const auto menus = window.findChildren<QMenu*>();
        QVERIFY(menus.size() >= 2);
        for (const QMenu* const menu : menus)
            QCOMPARE(sharedMnemonics(menu->actions()), QStringList());
    }

    void theMenusOfTheGermanWindow() {
        const Translations german({QStringLiteral("de")});
        const GroupWindow window;
        QStringList titles;
        for (const QAction* const entry : window.menuBar()->actions())
            titles << entry->text();
        QCOMPARE(titles, (QStringList{QStringLiteral("&Datei"), QStringLiteral("Kacheln"),
                                      QStringLiteral("&Hilfe")}));
        QCOMPARE(window.windowTitle(), QStringLiteral("GX7100Group 2.1"));
    }

    void whatTheCaptureWindowRemembersIsTheSameInEveryLanguage() {
        QByteArray english;
        {
            const CaptureControl window(nullptr, nullptr);
            english = window.getParams();
        }
        const Translations german({QStringLiteral("de")});
        CaptureControl window(nullptr, nullptr);
        QCOMPARE(window.getParams(), english);
        window.setParams(english);
        QCOMPARE(textsOf(window).filter(QStringLiteral("<none>")), QStringList());
    }

private:
    static bool matches(const QList<QRegularExpression>& texts, const QString& text) {
        return std::ranges::any_of(texts, [&text](const QRegularExpression& known) {
            return known.match(text).hasMatch();
        });
    }

    QSettings m_settings{QStringLiteral("VESTRA"), QStringLiteral("group7100")};
    QList<QRegularExpression> m_german;
    QList<QRegularExpression> m_english;
};

int main(int argc, char** argv) {
    return runTest<GermanWindowsTest>(argc, argv);
}

#include "test_german_windows.moc"
