#include "SoftKeys.h"

#include "CharacterSet.h"

#include <string>

namespace softkeys {
namespace {

constexpr int bandColumns = InstrumentScreen::columns / count;
constexpr int labelColumns = bandColumns - 2;
constexpr int bandPixels = GraphicsBitmap::width / count;

/// The label in the middle of its six columns, in the instrument's codes.
std::string centred(std::string_view label) {
    std::string codes = charset::fromUtf8(label).substr(0, labelColumns);
    const std::size_t left = (labelColumns - codes.size()) / 2;
    codes.insert(0, left, ' ');
    codes.resize(labelColumns, ' ');
    return codes;
}

} // namespace

void draw(InstrumentScreen& screen, const Labels& labels) {
    int column = 1;
    for (const std::string_view label : labels) {
        if (!label.empty()) {
            screen.put(column + 1, InstrumentScreen::rows - 1, "▄▄▄▄▄▄");
            screen.put(column, InstrumentScreen::rows, "▐");
            screen.putCodes(column + 1, InstrumentScreen::rows, centred(label),
                            InstrumentScreen::Attribute::Inverse);
            screen.put(column + bandColumns - 1, InstrumentScreen::rows, "▌");
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
