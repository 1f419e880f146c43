#include "Translations.h"

#include <QCoreApplication>
#include <QFile>
#include <QLibraryInfo>

namespace {

constexpr QLatin1String original("en");

QString fileOf(const QString& language) {
    return QStringLiteral(":/translations/gx7100group_%1.qm").arg(language);
}

/// "de" of "de-AT" and "de_AT".
QString base(const QString& language) {
    return language.section(u'-', 0, 0).section(u'_', 0, 0);
}

} // namespace

// Outside of every namespace, as the macro wants it.
static void initResource() {
    Q_INIT_RESOURCE(translations);
}

Translations::Translations(const QStringList& languages) : m_language(choose(languages)) {
    if (m_language == original)
        return;
    if (m_program.load(fileOf(m_language)))
        QCoreApplication::installTranslator(&m_program);
    if (m_qt.load(QStringLiteral("qtbase_") + m_language,
                  QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_qt);
}

Translations::~Translations() {
    QCoreApplication::removeTranslator(&m_qt);
    QCoreApplication::removeTranslator(&m_program);
}

QString Translations::choose(const QStringList& languages) {
    initResource();
    // Stops at English: who reads English first and German second gets English.
    for (const QString& language : languages) {
        QString name = base(language);
        if (name == original || QFile::exists(fileOf(name)))
            return name;
    }
    return original;
}
