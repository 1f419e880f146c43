#include "FCTButton.h"
#include "GENButton.h"
#include "PGButton.h"
#include "TestEnvironment.h"

#include <QSignalSpy>

#include <memory>

/// The keys outside the palette's blocks: what they send and how they look.
class KELButtonTest : public QObject {
    Q_OBJECT

private slots:
    void sends_data();
    void sends();
    void ignoresTheMiddleButton();
    void isStyledAlike_data();
    void isStyledAlike();
};

namespace {

enum Kind { Kel, Fct, Pg, Gen };

std::unique_ptr<KELButton> make(Kind kind) {
    switch (kind) {
    case Fct:
        return std::make_unique<FCTButton>();
    case Pg:
        return std::make_unique<PGButton>();
    case Gen: {
        auto made = std::make_unique<GENButton>();
        made->setCodes(0x0D, 0x01, 0x0A, 0x0C, 0x02, 0xFF, 0x03);
        return made;
    }
    default:
        return std::make_unique<KELButton>();
    }
}

} // namespace

void KELButtonTest::sends_data() {
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<int>("group");
    QTest::addColumn<int>("key");
    struct Row {
        const char* name;
        int modifiers;
        int plainKey;
        int genGroup;
        int genKey;
    };
    // Ctrl and Alt of the computer keyboard mean nothing to these keys.
    const Row rows[] = {
        {"nothing", Qt::NoModifier, 0, 0x00, 0x0D},
        {"Shift", Qt::ShiftModifier, 1, 0x01, 0x0A},
        {"Meta", Qt::MetaModifier, 2, 0x0C, 0x02},
        {"Shift+Meta", Qt::ShiftModifier | Qt::MetaModifier, 3, 0xFF, 0x03},
        {"Ctrl+Alt", Qt::ControlModifier | Qt::AltModifier, 0, 0x00, 0x0D},
        {"Ctrl+Shift", Qt::ControlModifier | Qt::ShiftModifier, 1, 0x01, 0x0A},
    };
    for (const Row& row : rows) {
        QTest::addRow("KELButton %s", row.name)
            << int(Kel) << row.modifiers << 0x24 << row.plainKey;
        QTest::addRow("FCTButton %s", row.name)
            << int(Fct) << row.modifiers << 0x24 << row.plainKey;
        QTest::addRow("PGButton %s", row.name) << int(Pg) << row.modifiers << 0x24 << row.plainKey;
        QTest::addRow("GENButton %s", row.name)
            << int(Gen) << row.modifiers << row.genGroup << row.genKey;
    }
}

void KELButtonTest::sends() {
    QFETCH(int, kind);
    QFETCH(int, modifiers);
    const auto button = make(Kind(kind));
    button->setCode(0x24);
    QSignalSpy keys(button.get(), &KELButton::MakeKey);
    for (const Qt::MouseButton with : {Qt::LeftButton, Qt::RightButton}) {
        QTest::mousePress(button.get(), with, Qt::KeyboardModifiers(modifiers));
        QCOMPARE(keys.size(), 1);
        QTEST(int(keys.at(0).at(0).value<unsigned char>()), "group");
        QTEST(int(keys.at(0).at(1).value<unsigned char>()), "key");
        QTest::mouseRelease(button.get(), with, Qt::KeyboardModifiers(modifiers));
        QCOMPARE(keys.size(), 1);
        keys.clear();
    }
}

void KELButtonTest::ignoresTheMiddleButton() {
    KELButton button;
    QSignalSpy keys(&button, &KELButton::MakeKey);
    QTest::mouseClick(&button, Qt::MiddleButton);
    QCOMPARE(keys.size(), 0);
}

void KELButtonTest::isStyledAlike_data() {
    QTest::addColumn<int>("kind");
    QTest::newRow("KELButton") << int(Kel);
    QTest::newRow("FCTButton") << int(Fct);
    QTest::newRow("PGButton") << int(Pg);
    QTest::newRow("GENButton") << int(Gen);
}

void KELButtonTest::isStyledAlike() {
    QFETCH(int, kind);
    // Spaces and the colours without "rgba" are part of it.
    QCOMPARE(make(Kind(kind))->styleSheet(),
             QStringLiteral("KELButton { color: rgba(228, 0, 0, 100%); background-color: rgba(0, "
                            "0, 0, 0%) } FCTButton { color: rgba(192, 192, 192, 100%); "
                            "background-color: rgba(228, 0, 0, 100%) }GENButton { color: rgba(192, "
                            "192, 192, 100%); background-color: (0, 0, 0, 0%)  }PGButton { color: "
                            "rgba(192, 192, 192, 100%); background-color: (0, 0, 0, 0%)  }"));
}

int main(int argc, char** argv) {
    return runTest<KELButtonTest>(argc, argv);
}

#include "KELButtonTest.moc"
