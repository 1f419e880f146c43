#include "ApplicationIcon.h"

QIcon applicationIcon() {
    QIcon icon(QStringLiteral(":/buttons/images/gx7100group.png"));
    for (const int size : {16, 22, 24, 32, 48, 128, 256}) {
        icon.addFile(QStringLiteral(":/buttons/images/gx7100group-%1.png").arg(size));
    }
    return icon;
}
