#pragma once

#include <QLocale>
#include <QStringList>
#include <QTranslator>

/// Puts what the operator reads into his language: this program's own texts, and with them what Qt
/// writes on its dialogs and boxes. Texts without a translation stay English.
///
/// Made once by each program, after the application object and before anything that shows text;
/// what was made earlier keeps its language. What instruments and files get is not text and does
/// not pass through here. GUI thread.
class Translations {
public:
    /// `languages` are the operator's, the most wanted first, as QLocale::uiLanguages() gives them.
    explicit Translations(const QStringList& languages = QLocale::system().uiLanguages());
    ~Translations();
    Translations(const Translations&) = delete;
    Translations& operator=(const Translations&) = delete;

    /// The language that the texts are in, such as "de"; "en" when they are not translated.
    QString language() const { return m_language; }

    /// The first of `languages` in which the texts are there, English being the one in which they
    /// are written; "en" when there is none.
    static QString choose(const QStringList& languages);

private:
    QString m_language;
    QTranslator m_program;
    QTranslator m_qt;
};
