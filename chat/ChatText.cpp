#include "ChatText.h"

#include <algorithm>

namespace {

/// What turns a control character into the letter that is typed with Ctrl for it.
constexpr ushort kCaret = 0x40;
constexpr QChar kDelete(0x7F);
constexpr QChar kEllipsis(0x2026);

/// Would turn the direction of everything after it, time stamps of later text included.
bool turnsDirection(QChar c) {
    return (c >= QChar(0x202A) && c <= QChar(0x202E)) || (c >= QChar(0x2066) && c <= QChar(0x2069));
}

/// The text document takes these for its own marks of paragraphs and frames.
bool structuresDocument(QChar c) {
    return c.category() == QChar::Separator_Paragraph || c.isNonCharacter() ||
           (c >= QChar(0xFDD0) && c <= QChar(0xFDEF)) || c == QChar::ObjectReplacementCharacter;
}

QString displayable(QChar c) {
    if (c == QLatin1Char('\n') || c.category() == QChar::Separator_Paragraph) {
        return QString(QChar::LineSeparator);
    }
    if (c == QLatin1Char('\t')) {
        return QString(c);
    }
    if (c < QLatin1Char(' ') || c == kDelete) {
        return QLatin1Char('^') + QString(QChar(c.unicode() ^ kCaret));
    }
    if (c.category() == QChar::Other_Control || turnsDirection(c) || structuresDocument(c)) {
        return QString(QChar::ReplacementCharacter);
    }
    return QString(c);
}

/// The beginning of `text`; a character of two halves that the limit divides is left out.
QString beginning(const QString& text) {
    const qsizetype length = std::min(text.size(), kLongestChatLine);
    const bool divides =
        length > 0 && length < text.size() && text.at(length - 1).isHighSurrogate();
    return text.left(divides ? length - 1 : length);
}

} // namespace

QString displayableChat(const QString& text) {
    QString lines = beginning(text);
    lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    lines.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    QString shown;
    for (const QChar c : std::as_const(lines)) {
        shown.append(displayable(c));
    }
    if (text.size() > kLongestChatLine) {
        shown.append(kEllipsis);
    }
    return shown;
}
