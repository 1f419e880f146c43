#include "WholeFile.h"

#include <QSaveFile>

QString wholefile::write(const QString& path, const QByteArray& contents) {
    QSaveFile file(path);
    // Flushed by hand: closing, which commit() does, forgets that what was buffered did not fit.
    const bool isWhole = file.open(QIODevice::WriteOnly) &&
                         file.write(contents) == contents.size() && file.flush() && file.commit();
    return isWhole ? QString() : file.errorString();
}
