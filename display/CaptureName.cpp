#include "CaptureName.h"

QString CaptureName::filePath() const {
    const QString suffix = QStringLiteral(".pdf");
    QString name = pattern;
    if (counter)
        name.replace(u'#', QString::number(*counter));
    if (!name.endsWith(suffix))
        name += suffix;
    return directory + name;
}
