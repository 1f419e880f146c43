#include "BoxRows.h"
#include "FakeDnsSd.h"
#include "TestEnvironment.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QSignalSpy>

/// The list changes while the operator has a hand on it.
class BonjourBoxInputTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aTypedAddressIsNotThrownAway();
    void aTextSetForTheOperatorIsNotThrownAway();
    void theCursorAndTheSelectionStay_data();
    void theCursorAndTheSelectionStay();
    void nothingIsCompletedBehindATypedAddress();
    void typedIntoAnInstrumentsRowIsIgnored();
    void theNameOfAnInstrumentTypedSelectsIt();
    void typedTextGivesWayToTheDefaultButIsKept();
    void anErasedTextKeepsTheLabel();
    void aTypedAddressStaysTheLabel();
    void aPickedInstrumentStaysPicked();
    void aPickedInstrumentThatGoesGivesWay();
    void anInstrumentNamedLikeTheLastRow();
    void theOpenListFollows();
    void theOpenListSurvivesEverything();
    void aPickFromTheOpenListIsTheRowSeen();
    void severalHundredChanges();

private:
    QLineEdit& edit() { return *m_box->lineEdit(); }
    void pick(int row);
    void type(const QString& text);

    std::unique_ptr<FakeDnsSd> m_library;
    std::unique_ptr<BonjourBox> m_box;
};

void BonjourBoxInputTest::init() {
    m_library = std::make_unique<FakeDnsSd>();
    m_box = std::make_unique<BonjourBox>();
    m_box->start("_gx7100._tcp", "local.");
    m_box->resize(250, 30);
    m_box->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_box.get()));
    m_box->setFocus();
}

void BonjourBoxInputTest::cleanup() {
    m_box.reset();
    m_library.reset();
}

/// Goes to a row with the keyboard.
void BonjourBoxInputTest::pick(int row) {
    for (int presses = 0; m_box->currentIndex() != row && presses < 50; ++presses)
        QTest::keyClick(m_box.get(), m_box->currentIndex() < row ? Qt::Key_Down : Qt::Key_Up);
    QCOMPARE(m_box->currentIndex(), row);
}

void BonjourBoxInputTest::type(const QString& text) {
    edit().selectAll();
    QTest::keyClicks(&edit(), text);
}

void BonjourBoxInputTest::aTypedAddressIsNotThrownAway() {
    type("192.168.");
    found(*m_box, "unit1", "10.0.0.1");
    QTest::keyClicks(&edit(), "1.9");
    found(*m_box, "alpha", "10.0.0.2");
    withdrawn(*m_box, "unit1");
    QCOMPARE(edit().text(), QStringLiteral("192.168.1.9"));
    QCOMPARE(askedFor(*m_box), QStringLiteral("192.168.1.9 0 7100"));
    QCOMPARE(textsOf(*m_box), (QStringList{"alpha", "---", "192.168.1.9"}));
}

void BonjourBoxInputTest::aTextSetForTheOperatorIsNotThrownAway() {
    m_box->setDefault("unit3");
    m_box->setEditText("unit3");
    found(*m_box, "unit1", "10.0.0.1");
    QCOMPARE(edit().text(), QStringLiteral("unit3"));
    QCOMPARE(m_box->currentIndex(), 2);
    found(*m_box, "unit3", "10.0.0.3");
    QCOMPARE(askedFor(*m_box), QStringLiteral("10.0.0.3 0 48155"));
    // It was not typed: the row to type into is as it was.
    QCOMPARE(textsOf(*m_box), (QStringList{"unit1", "unit3", "---", "Other..."}));
}

void BonjourBoxInputTest::theCursorAndTheSelectionStay_data() {
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("length");

    QTest::newRow("a cursor at the start") << 0 << 0;
    QTest::newRow("a cursor inside") << 4 << 0;
    QTest::newRow("a cursor at the end") << 11 << 0;
    QTest::newRow("selected to the right") << 4 << 3;
    QTest::newRow("selected to the left") << 7 << -3;
    QTest::newRow("all selected") << 0 << 11;
}

void BonjourBoxInputTest::theCursorAndTheSelectionStay() {
    QFETCH(int, start);
    QFETCH(int, length);
    type("192.168.1.9");
    if (length == 0)
        edit().setCursorPosition(start);
    else
        edit().setSelection(start, length);
    found(*m_box, "unit1", "10.0.0.1");
    QCOMPARE(edit().cursorPosition(), start + length);
    QCOMPARE(edit().selectedText().size(), std::abs(length));
    if (length != 0)
        QCOMPARE(edit().selectionStart(), std::min(start, start + length));
}

void BonjourBoxInputTest::nothingIsCompletedBehindATypedAddress() {
    found(*m_box, "10.0.0.15", "10.0.0.1");
    pick(2);
    type("10.0.0.1");
    QCOMPARE(edit().text(), QStringLiteral("10.0.0.1"));
    QTest::keyClick(&edit(), Qt::Key_Return);
    QCOMPARE(askedFor(*m_box), QStringLiteral("10.0.0.1 0 7100"));
}

void BonjourBoxInputTest::typedIntoAnInstrumentsRowIsIgnored() {
    found(*m_box, "unit1", "10.0.0.1");
    found(*m_box, "unit2", "10.0.0.2");
    pick(1);
    type("192.168.1.9");
    found(*m_box, "unit3", "10.0.0.3");
    QCOMPARE(edit().text(), QStringLiteral("192.168.1.9"));
    QCOMPARE(askedFor(*m_box), QStringLiteral("10.0.0.2 0 48155"));
    QCOMPARE(m_box->currentText(), QStringLiteral("unit2"));
    QCOMPARE(textsOf(*m_box), (QStringList{"unit1", "unit2", "unit3", "---", "Other..."}));
}

void BonjourBoxInputTest::theNameOfAnInstrumentTypedSelectsIt() {
    found(*m_box, "unit1", "10.0.0.1");
    found(*m_box, "unit2", "10.0.0.2");
    pick(3);
    type("unit2");
    QTest::keyClick(&edit(), Qt::Key_Return);
    QCOMPARE(askedFor(*m_box), QStringLiteral("10.0.0.2 0 48155"));
}

void BonjourBoxInputTest::typedTextGivesWayToTheDefaultButIsKept() {
    m_box->setDefault("unit1");
    type("192.168.1.9");
    found(*m_box, "alpha", "10.0.0.2");
    QCOMPARE(edit().text(), QStringLiteral("192.168.1.9"));
    found(*m_box, "unit1", "10.0.0.1");
    QCOMPARE(m_box->currentText(), QStringLiteral("unit1"));
    QCOMPARE(textsOf(*m_box), (QStringList{"alpha", "unit1", "---", "192.168.1.9"}));
}

void BonjourBoxInputTest::anErasedTextKeepsTheLabel() {
    m_box->setDefault("unit1");
    edit().selectAll();
    QTest::keyClick(&edit(), Qt::Key_Backspace);
    found(*m_box, "alpha", "10.0.0.2");
    QCOMPARE(edit().text(), QString());
    found(*m_box, "unit1", "10.0.0.1");
    QCOMPARE(textsOf(*m_box), (QStringList{"alpha", "unit1", "---", "Other..."}));
}

void BonjourBoxInputTest::aTypedAddressStaysTheLabel() {
    type("192.168.1.9");
    QCOMPARE(askedFor(*m_box), QStringLiteral("192.168.1.9 0 7100"));
    found(*m_box, "unit1", "10.0.0.1");
    withdrawn(*m_box, "unit1");
    QCOMPARE(askedFor(*m_box), QStringLiteral("192.168.1.9 0 7100"));
}

void BonjourBoxInputTest::aPickedInstrumentStaysPicked() {
    found(*m_box, "unit1", "10.0.0.1");
    found(*m_box, "unit2", "10.0.0.2");
    pick(1);
    found(*m_box, "alpha", "10.0.0.3");
    found(*m_box, "zulu", "10.0.0.4");
    withdrawn(*m_box, "unit1");
    QCOMPARE(m_box->currentIndex(), 1);
    QCOMPARE(askedFor(*m_box), QStringLiteral("10.0.0.2 0 48155"));
}

void BonjourBoxInputTest::aPickedInstrumentThatGoesGivesWay() {
    found(*m_box, "unit1", "10.0.0.1");
    found(*m_box, "unit2", "10.0.0.2");
    pick(1);
    withdrawn(*m_box, "unit2");
    QCOMPARE(askedFor(*m_box), QStringLiteral("10.0.0.1 0 48155"));
    // That was not picked: the first row is current again.
    found(*m_box, "alpha", "10.0.0.3");
    QCOMPARE(askedFor(*m_box), QStringLiteral("10.0.0.3 0 48155"));
}

void BonjourBoxInputTest::anInstrumentNamedLikeTheLastRow() {
    found(*m_box, "Other...", "10.0.0.1");
    QCOMPARE(askedFor(*m_box), QStringLiteral("10.0.0.1 0 48155"));
    pick(2);
    type("192.168.1.9");
    found(*m_box, "unit1", "10.0.0.2");
    QCOMPARE(askedFor(*m_box), QStringLiteral("192.168.1.9 0 7100"));
    pick(0);
    found(*m_box, "alpha", "10.0.0.3");
    QCOMPARE(askedFor(*m_box), QStringLiteral("10.0.0.1 0 48155"));
}

void BonjourBoxInputTest::theOpenListFollows() {
    found(*m_box, "unit1", "10.0.0.1");
    found(*m_box, "unit2", "10.0.0.2");
    m_box->showPopup();
    QTRY_VERIFY(m_box->view()->isVisible());
    const int height = m_box->view()->height();
    QTest::keyClick(m_box->view(), Qt::Key_Down);
    QCOMPARE(m_box->view()->currentIndex().data().toString(), QStringLiteral("unit2"));

    for (const char* name : {"alpha", "bravo", "charlie", "delta"})
        found(*m_box, name, "10.0.0.3");
    QVERIFY(m_box->view()->isVisible());
    QCOMPARE(m_box->view()->currentIndex().data().toString(), QStringLiteral("unit2"));
    QTRY_VERIFY(m_box->view()->height() > height);

    withdrawn(*m_box, "unit2");
    QVERIFY(m_box->view()->isVisible());
    QTest::keyClick(m_box->view(), Qt::Key_Escape);
    QTRY_VERIFY(!m_box->view()->isVisible());
    found(*m_box, "unit3", "10.0.0.3");
    QVERIFY(!m_box->view()->isVisible());
}

void BonjourBoxInputTest::theOpenListSurvivesEverything() {
    m_box->showPopup();
    QTRY_VERIFY(m_box->view()->isVisible());
    for (int round = 0; round < 20; ++round) {
        for (int i = 0; i < 30; ++i) {
            found(*m_box, "unit" + std::to_string(i), "10.0.0.1");
            if (i % 7 == 0)
                QCoreApplication::processEvents();
        }
        QTest::keyClick(m_box->view(), Qt::Key_End);
        for (int i = 0; i < 30; ++i)
            withdrawn(*m_box, "unit" + std::to_string(i));
        QCOMPARE(m_box->count(), 2);
        QVERIFY(m_box->view()->isVisible());
    }
    // Closed with the box, open as it is.
    m_box.reset();
    QCoreApplication::processEvents();
}

void BonjourBoxInputTest::aPickFromTheOpenListIsTheRowSeen() {
    found(*m_box, "unit1", "10.0.0.1");
    found(*m_box, "unit2", "10.0.0.2");
    m_box->showPopup();
    QTRY_VERIFY(m_box->view()->isVisible());
    QTest::keyClick(m_box->view(), Qt::Key_Down);
    found(*m_box, "alpha", "10.0.0.3");
    const QSignalSpy activated(m_box.get(), &QComboBox::activated);
    QTest::keyClick(m_box->view(), Qt::Key_Return);
    QTRY_COMPARE(activated.count(), 1);
    QCOMPARE(askedFor(*m_box), QStringLiteral("10.0.0.2 0 48155"));
}

void BonjourBoxInputTest::severalHundredChanges() {
    type("192.168.1.9");
    for (int i = 0; i < 100; ++i)
        found(*m_box, "unit" + std::to_string(i), "10.0.0.1");
    QCOMPARE(m_box->count(), 102);
    for (int i = 0; i < 600; ++i)
        found(*m_box, "unit1", "10.1." + std::to_string(i / 250) + "." + std::to_string(i % 250));
    QCOMPARE(m_box->count(), 102);
    QCOMPARE(askedFor(*m_box), QStringLiteral("192.168.1.9 0 7100"));
}

int main(int argc, char** argv) {
    return runTest<BonjourBoxInputTest>(argc, argv);
}

#include "BonjourBoxInputTest.moc"
