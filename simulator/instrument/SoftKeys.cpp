#include "SoftKeys.h"

#include "CharacterSet.h"

#include <string>

namespace softkeys {
namespace {

constexpr int bandColumns = InstrumentScreen::columns / count;
constexpr int labelColumns = bandColumns - 2;
constexpr int bandPixels = GraphicsBitmap::width / count;

/// Text in the middle of a cap's six columns, in the instrument's codes.
std::string centred(std::string_view utf8) {
    std::string codes = charset::fromUtf8(utf8).substr(0, labelColumns);
    const std::size_t left = (labelColumns - codes.size()) / 2;
    codes.insert(0, left, ' ');
    codes.resize(labelColumns, ' ');
    return codes;
}

/// One row of a cap, with half a column of air on either side.
void drawCapRow(InstrumentScreen& screen, int column, int row, std::string_view text) {
    screen.put(column, row, "▐");
    screen.putCodes(column + 1, row, centred(text), InstrumentScreen::Attribute::Inverse);
    screen.put(column + bandColumns - 1, row, "▌");
}

} // namespace

void draw(InstrumentScreen& screen, const Labels& labels) {
    constexpr std::array<std::string_view, count> keys{"F1", "F2", "F3", "F4", "F5"};
    int column = 1;
    for (std::size_t i = 0; i < labels.size(); ++i) {
        if (!labels.at(i).empty()) {
            drawCapRow(screen, column, InstrumentScreen::rows - 1, labels.at(i));
            drawCapRow(screen, column, InstrumentScreen::rows, keys.at(i));
        }
        column += bandColumns;
    }
}

void draw(GraphicsBitmap& bitmap, const Labels& labels) {
    constexpr int top = 52;
    constexpr int margin = 3;
    int left = 0;
    for (const std::string_view label : labels) {
        if (!label.empty()) {
            const int right = left + bandPixels - 1 - margin;
            bitmap.fill(left + margin + 1, top, right - 1, top);
            bitmap.fill(left + margin, top + 1, right, GraphicsBitmap::height - 1);
            const auto pixels = static_cast<int>(charset::fromUtf8(label).size()) * 6 - 1;
            bitmap.text(left + (bandPixels - pixels) / 2, top + 3, label,
                        GraphicsBitmap::Ink::Clear);
        }
        left += bandPixels;
    }
}

} // namespace softkeys
