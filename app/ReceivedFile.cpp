#include "ReceivedFile.h"

#include "WholeFile.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace receivedfile {

QString suggestedName(const QString& origin, const QString& time) {
    constexpr qsizetype longestOrigin = 60;
    QString name;
    for (const QChar character : origin.left(longestOrigin)) {
        const bool forbidden = character.category() == QChar::Other_Control ||
                               character.category() == QChar::Other_Format ||
                               QStringLiteral("/\\:*?\"<>|").contains(character);
        name += forbidden ? QLatin1Char(' ') : character;
    }
    name = name.simplified();
    while (name.startsWith(QLatin1Char('.')) || name.startsWith(QLatin1Char(' ')))
        name.remove(0, 1);
    if (name.isEmpty())
        name = QStringLiteral("instrument");
    return QStringLiteral("%1 %2.bin").arg(name, time);
}

QString save(const QString& path, const QByteArray& contents) {
    // Renaming would put the file in the place of a device.
    const QFileInfo existing(path);
    if (existing.exists() && !existing.isFile())
        return QCoreApplication::translate("receivedfile", "not an ordinary file");
    return wholefile::write(path, contents);
}

} // namespace receivedfile
