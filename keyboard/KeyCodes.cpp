#include "KeyCodes.h"

#include <QCoreApplication>

namespace {

constexpr int kFirstPrintable = 32;

QString hexadecimal(int byte, QChar fill) {
    return QStringLiteral("%1").arg(byte, 2, 16, fill);
}

} // namespace

QString keyLabel(unsigned short code) {
    const int byte = code & 0xFF;
    if (byte < kFirstPrintable) {
        return hexadecimal(byte, QLatin1Char(' '));
    }
    switch (byte) {
    case ' ':
        return QCoreApplication::translate("LetterButton", "space");
    case '&':
        return QStringLiteral("&&");
    default:
        return QString(QChar(byte));
    }
}

QString spokenKey(unsigned short code) {
    const int byte = code & 0xFF;
    if (byte < kFirstPrintable) {
        return QCoreApplication::translate("LetterButton", "Control code %1 hexadecimal")
            .arg(hexadecimal(byte, QLatin1Char('0')));
    }
    return byte == '&' ? QStringLiteral("&") : keyLabel(code);
}
