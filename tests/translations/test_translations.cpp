#include "TestEnvironment.h"
#include "TranslationFile.h"
#include "Translations.h"

#include <QDialogButtonBox>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>

namespace {

/// What `pattern` matches in `text`, sorted.
QStringList matches(const QString& text, const QString& pattern) {
    QStringList found;
    auto match = QRegularExpression(pattern).globalMatch(text);
    while (match.hasNext())
        found.append(match.next().captured());
    found.sort();
    return found;
}

QString helpMenu() {
    return QCoreApplication::translate("GroupWindow", "&Help");
}

QString cancelButton() {
    const QDialogButtonBox box(QDialogButtonBox::Cancel);
    return box.button(QDialogButtonBox::Cancel)->text();
}

} // namespace

class TranslationsTest : public QObject {
    Q_OBJECT

private slots:
    void chooses_data() {
        QTest::addColumn<QStringList>("languages");
        QTest::addColumn<QString>("chosen");

        QTest::newRow("German") << QStringList{"de"} << "de";
        QTest::newRow("German of a country") << QStringList{"de-AT", "de-Latn-AT"} << "de";
        QTest::newRow("as in the environment") << QStringList{"de_CH"} << "de";
        QTest::newRow("English") << QStringList{"en"} << "en";
        QTest::newRow("English before German") << QStringList{"en-GB", "de-DE"} << "en";
        QTest::newRow("German before English") << QStringList{"de-DE", "en-GB"} << "de";
        QTest::newRow("German before one we do not have") << QStringList{"de", "fr"} << "de";
        QTest::newRow("one we do not have before German") << QStringList{"fr", "de"} << "de";
        QTest::newRow("none that we have") << QStringList{"fr", "ja"} << "en";
        QTest::newRow("no language") << QStringList{"C"} << "en";
        QTest::newRow("nothing") << QStringList{} << "en";
        QTest::newRow("what would leave the folder") << QStringList{"../de", "", "/"} << "en";
    }

    void chooses() {
        QFETCH(QStringList, languages);
        QFETCH(QString, chosen);
        QCOMPARE(Translations::choose(languages), chosen);
    }

    void followsTheEnvironment_data() {
        QTest::addColumn<QByteArray>("lang");
        QTest::addColumn<QByteArray>("language");
        QTest::addColumn<QString>("chosen");

        QTest::newRow("LANG") << QByteArray("de_DE.UTF-8") << QByteArray() << "es gibt keine Seite";
        QTest::newRow("LANGUAGE first")
            << QByteArray("en_GB.UTF-8") << QByteArray("de:en") << "es gibt keine Seite";
        QTest::newRow("English wanted") << QByteArray("de_DE.UTF-8") << QByteArray("en:de") << "en";
        QTest::newRow("none") << QByteArray("C.UTF-8") << QByteArray() << "there is no page";
    }

    void followsTheEnvironment() {
        QFETCH(QByteArray, lang);
        QFETCH(QByteArray, language);
        QFETCH(QString, chosen);
        // A program of its own: what the environment says is read once, at the start.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("LC_ALL"), QString::fromLatin1(lang));
        environment.insert(QStringLiteral("LANGUAGE"), QString::fromLatin1(language));
        QProcess program;
        program.setProcessEnvironment(environment);
        program.start(QStringLiteral(GX_SIMULATOR), {QStringLiteral("--page"), "moon"});
        QVERIFY(program.waitForFinished(60000));
        const QString complaint = QString::fromUtf8(program.readAllStandardError());
        QVERIFY2(complaint.contains(chosen), qPrintable(complaint));
    }

    void ourTextsAndThoseOfQtSpeakGermanWhileItLives() {
        QCOMPARE(helpMenu(), QStringLiteral("&Help"));
        QCOMPARE(cancelButton(), QStringLiteral("Cancel"));
        {
            const Translations german({QStringLiteral("de")});
            QCOMPARE(german.language(), QStringLiteral("de"));
            QCOMPARE(helpMenu(), QStringLiteral("&Hilfe"));
            QVERIFY2(cancelButton().contains(QStringLiteral("Abbrechen")),
                     "Qt's own translations are not there");
        }
        QCOMPARE(helpMenu(), QStringLiteral("&Help"));
        QCOMPARE(cancelButton(), QStringLiteral("Cancel"));
    }

    void everyTextIsTranslated() {
        const QList<TranslatedText> texts = german();
        QVERIFY2(texts.size() > 200, "the file was not read");
        for (const TranslatedText& text : texts) {
            QVERIFY2(text.finished, qPrintable(text.source));
            for (const QString& translation : text.translations)
                QVERIFY2(!translation.isEmpty(), qPrintable(text.source));
        }
    }

    void nothingIsLostInTranslation_data() {
        QTest::addColumn<QString>("pattern");

        QTest::newRow("what is filled in") << "%L?(n|[0-9]{1,2})";
        QTest::newRow("markup") << "</?(h3|p|b|u|i|br|qt)>";
        QTest::newRow("line ends") << "\\n";
        QTest::newRow("what surrounds it") << "^\\s+|\\s+$";
        QTest::newRow("keys of a menu") << "&(?=[^&\\s])(?=\\w)";
        QTest::newRow("kinds of files") << "\\*\\.\\w+|\\(\\*\\)";
        QTest::newRow("names of ours") << "GX-?7100|GX7100Group|gx7100sim|VESTRA|RS-232|CRC-32|LCD";
        QTest::newRow("options and addresses") << "--\\w+|127\\.0\\.0\\.\\d|::1|usermod -aG";
    }

    void nothingIsLostInTranslation() {
        QFETCH(QString, pattern);
        int found = 0;
        for (const TranslatedText& text : german()) {
            const QStringList expected = matches(text.source, pattern);
            found += static_cast<int>(expected.size());
            for (const QString& translation : text.translations) {
                QVERIFY2(
                    matches(translation, pattern) == expected,
                    qPrintable(QStringLiteral("\"%1\" -> \"%2\"").arg(text.source, translation)));
            }
        }
        QVERIFY2(found > 0, "nothing to look at");
    }

    void whatIsWrittenTheSameWayReadsTheSame() {
        // One word for one thing: the same text has the same translation, but where it means
        // something else.
        const QStringList ambiguous{QStringLiteral("text"), QStringLiteral("Keyboard")};
        QHash<QString, QString> known;
        for (const TranslatedText& text : german()) {
            if (ambiguous.contains(text.source))
                continue;
            const QString first = known.value(text.source, text.translations.constFirst());
            QCOMPARE(text.translations.constFirst(), first);
            known.insert(text.source, first);
        }
    }

private:
    static QList<TranslatedText> german() {
        return readTranslationFile(QStringLiteral(GX_TRANSLATIONS "/gx7100group_de.ts"));
    }
};

int main(int argc, char** argv) {
    return runTest<TranslationsTest>(argc, argv);
}

#include "test_translations.moc"
