#include "ScreenFeed.h"

#include "Packet.h"

#include <cstdio>

namespace {

constexpr std::size_t markedCell = 7 * screenfeed::columns + 20;
constexpr char fullBlock = '\xDB';

} // namespace

std::string screenfeed::text(int instrument, int update) {
    std::string screen;
    char row[64];
    std::snprintf(row, sizeof row, " UNIT %3d   MEASURE            %02d:%02d:%02d  ", instrument,
                  update / 36000 % 24, update / 600 % 60, update / 10 % 60);
    screen += row;
    for (int channel = 1; channel <= 6; ++channel) {
        const unsigned reading =
            static_cast<unsigned>(update * 7919 + channel * 104729 + instrument) * 2654435761U;
        std::snprintf(row, sizeof row, " Channel %d   %5u.%02u mV   limit 40000  ", channel,
                      reading % 32768, reading / 32768 % 100);
        screen += row;
    }
    screen += " F1      F2      F3      F4      F5     ";
    screen.resize(std::size_t{columns} * rows, ' ');
    return screen;
}

std::string screenfeed::item(char code, const std::string& data) {
    return packet::bundle(std::string(1, code), data);
}

std::string screenfeed::frameOf(const std::string& type, const std::string& body) {
    return packet::bundle("<D>", packet::build(type, body));
}

std::string screenfeed::frame(int instrument, int update, bool mark) {
    std::string cells = text(instrument, update);
    cells[markedCell] = mark ? fullBlock : ' ';
    std::string attributes(cells.size(), '\0');
    // The title bar is inverse.
    attributes.replace(0, columns, columns, '\1');
    return frameOf("BNDL",
                   item('T', cells) + item('A', attributes) + item('R', std::string(3, '\0')));
}
