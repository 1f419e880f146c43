#include "ScreenText.h"

#include "CellGlyph.h"

#include <QStringList>

#include <algorithm>

namespace {

QChar spoken(char code) {
    const CellGlyph glyph = cellGlyph(static_cast<unsigned char>(code));
    return glyph.kind == CellGlyph::Kind::Character && glyph.character.isPrint() ? glyph.character
                                                                                 : QChar(u' ');
}

} // namespace

QString screenText(std::string_view codes, int columns) {
    const auto rowLength = static_cast<std::size_t>(std::max(columns, 1));
    QStringList lines;
    while (!codes.empty()) {
        const std::string_view row = codes.substr(0, rowLength);
        codes.remove_prefix(row.size());
        QString line;
        for (const char code : row)
            line += spoken(code);
        line = line.trimmed();
        if (!line.isEmpty())
            lines += line;
    }
    return lines.join(u'\n');
}
