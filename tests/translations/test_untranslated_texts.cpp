#include "TestEnvironment.h"
#include "UntranslatedTexts.h"

#include <QDirIterator>
#include <QFile>

#include <algorithm>
#include <array>

namespace {

/// What is meant to stay as it is: sentences of a file or folder, all of them or one.
struct Exception {
    QString path;
    QString text;
};

const std::array<Exception, 4> exceptions{{
    // Diagnostics on the standard output.
    {"discovery/client/BonjourClientImpl.cpp", {}},
    // What an instrument shows on its screen, and what it sends as a file.
    {"simulator/instrument/", {}},
    {"simulator/SerialOptions.cpp", "A file from the instrument.\\n"},
    // The pattern of a file's name.
    {"forms/CaptureControl.ui", "7100Screen_#.pdf"},
}};

bool isException(const QString& path, const QString& text) {
    return std::ranges::any_of(exceptions, [&path, &text](const Exception& exception) {
        return path.startsWith(exception.path) &&
               (exception.text.isEmpty() || exception.text == text);
    });
}

QString contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList texts(const QList<UntranslatedText>& found) {
    QStringList texts;
    for (const UntranslatedText& one : found)
        texts.append(QStringLiteral("%1: %2").arg(one.line).arg(one.text));
    return texts;
}

} // namespace

class UntranslatedTextsTest : public QObject {
    Q_OBJECT

private slots:
    void finds_data() {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QStringList>("found");

        const QStringList none;
        QTest::newRow("nothing") << "" << none;
        QTest::newRow("translated") << "label->setText(tr(\"Quit now\"));" << none;
        QTest::newRow("translated in pieces") << "box.setText(tr(\"Quit\"\n \" now\"));" << none;
        QTest::newRow("by the application")
            << "a(QCoreApplication::translate(\"C\", \"Quit now\"));" << none;
        QTest::newRow("marked") << "T t[]{{1, QT_TRANSLATE_NOOP(\"C\", \"quit now\")}};" << none;
        QTest::newRow("plain") << "a();\nlabel->setText(\"Quit\");" << QStringList{"2: Quit"};
        QTest::newRow("as a string")
            << "w->setWindowTitle(QStringLiteral(\"Quit\"));" << QStringList{"1: Quit"};
        QTest::newRow("put together")
            << "w->setToolTip(tr(\"Quit\") + QStringLiteral(\" %1 now\").arg(x));"
            << QStringList{"1:  %1 now"};
        QTest::newRow("a box") << "QMessageBox::information(this, tr(\"A\"), \"Stop\");"
                               << QStringList{"1: Stop"};
        QTest::newRow("on the heap")
            << "auto* a = new QAction(\"Stop\", this);" << QStringList{"1: Stop"};
        QTest::newRow("on the stack") << "QLabel label(\"Stop\");" << QStringList{"1: Stop"};
        QTest::newRow("in a list") << "d.setNameFilters({tr(\"All (*)\"), \"Text (*.txt)\"});"
                                   << QStringList{"1: Text (*.txt)"};
        QTest::newRow("in one of several cases")
            << "l->setText(a ? tr(\"Stop\") : QStringLiteral(\"Halt\"));" << QStringList{"1: Halt"};
        QTest::newRow("a sentence kept for later")
            << "const QString text = QStringLiteral(\"That did not work\");"
            << QStringList{"1: That did not work"};
        QTest::newRow("a raw text") << "l->setText(R\"(Stop)\");" << QStringList{"1: Stop"};
        QTest::newRow("in a slot of its own")
            << "connect(x, [this] { m_x->setText(\"Go\"); });" << QStringList{"1: Go"};
        QTest::newRow("markup only")
            << "l->setText(QStringLiteral(\"<qt>%1</qt>\").arg(x));" << none;
        QTest::newRow("signs only") << "l->setText(QStringLiteral(\"%1: %2\"));" << none;
        QTest::newRow("an image") << "new QAction(QIcon(\":/images/a.png\"), tr(\"A\"), this);"
                                  << none;
        QTest::newRow("a key in the settings") << "store.setValue(\"group/count\", 1);" << none;
        QTest::newRow("a diagnostic") << "throw SocketError(\"illegal address \" + text);" << none;
        QTest::newRow("in a comment")
            << "// setText(\"Stop it now\")\n/* setText(\"Stop\") */" << none;
        QTest::newRow("an included file") << "#include \"Quit now.h\"\n" << none;
        QTest::newRow("quotes in quotes")
            << "l->setText(tr(\"say \\\"a\\\"\")); c = '\"'; l->setText(\"Go\");"
            << QStringList{"1: Go"};
    }

    void finds() {
        QFETCH(QString, source);
        QFETCH(QStringList, found);
        QCOMPARE(texts(untranslatedTextsInCode(source)), found);
    }

    void findsInForms() {
        const QString form = QStringLiteral("<ui><property name=\"text\"><string>Stop</string>"
                                            "</property>\n<property name=\"text\">"
                                            "<string notr=\"true\">Halt</string></property>\n"
                                            "<property name=\"styleSheet\">"
                                            "<string notr=\"true\">color: red</string>"
                                            "</property><property name=\"text\">"
                                            "<string notr=\"true\">3</string></property></ui>");
        QCOMPARE(texts(untranslatedTextsInForm(form)), QStringList{"2: Halt"});
    }

    void theSourcesHaveNone() {
        const QDir root(QStringLiteral(GX_SOURCES));
        int files = 0;
        QStringList found;
        QStringList folders = root.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        for (const char* const unseen : {"bench", "build", "docs", "fuzz", "tests"})
            folders.removeAll(QLatin1String(unseen));
        for (const QString& folder : folders) {
            QDirIterator each(root.filePath(folder), {"*.cpp", "*.h", "*.ui"}, QDir::Files,
                              QDirIterator::Subdirectories);
            while (each.hasNext()) {
                const QString path = each.next();
                const QString name = root.relativeFilePath(path);
                ++files;
                const auto texts = name.endsWith(u".ui") ? untranslatedTextsInForm(contents(path))
                                                         : untranslatedTextsInCode(contents(path));
                for (const UntranslatedText& text : texts) {
                    if (!isException(name, text.text))
                        found.append(
                            QStringLiteral("%1:%2: %3").arg(name).arg(text.line).arg(text.text));
                }
            }
        }
        QVERIFY(files > 100);
        QVERIFY2(found.isEmpty(), qPrintable(u'\n' + found.join(u'\n')));
    }
};

int main(int argc, char** argv) {
    return runTest<UntranslatedTextsTest>(argc, argv);
}

#include "test_untranslated_texts.moc"
