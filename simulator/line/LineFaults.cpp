#include "LineFaults.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr int highestReply = 255;
constexpr int highestBlock = 65535;

template <typename Number>
bool readNumber(std::string_view text, Number& number, Number least, Number most) {
    const char* const end = text.data() + text.size();
    Number read{};
    const auto result = std::from_chars(text.data(), end, read);
    if (result.ec != std::errc() || result.ptr != end || !(read >= least && read <= most))
        return false;
    number = read;
    return true;
}

bool readRate(std::string_view text, double& rate) {
    return readNumber(text, rate, 0.0, 1.0);
}

bool readBlock(std::string_view text, int& block) {
    return readNumber(text, block, 1, highestBlock);
}

/// "code@block", or "code@blockxtimes".
bool readReply(LineFaults& faults, std::string_view text) {
    const std::size_t at = text.find('@');
    if (at == std::string_view::npos)
        return false;
    std::string_view block = text.substr(at + 1);
    const std::size_t times = block.find('x');
    if (times != std::string_view::npos) {
        if (!readBlock(block.substr(times + 1), faults.replyTimes))
            return false;
        block = block.substr(0, times);
    }
    return readNumber(text.substr(0, at), faults.reply, 0, highestReply) &&
           readBlock(block, faults.replyAt);
}

/// Says where the translations of a text stand that is shown elsewhere.
constexpr const char* operatorText(const char* /*context*/, const char* text) {
    return text;
}

} // namespace

const std::vector<LineFaultKind>& lineFaultKinds() {
    static const std::vector<LineFaultKind> kinds{
        {"bit-errors", "RATE",
         operatorText("SerialOptions", "turns over a bit of so many bytes, 0 to 1"),
         [](LineFaults& faults, std::string_view value) {
             return readRate(value, faults.bitErrors);
         }},
        {"drops", "RATE", operatorText("SerialOptions", "loses so many bytes, 0 to 1"),
         [](LineFaults& faults, std::string_view value) { return readRate(value, faults.drops); }},
        {"duplicates", "RATE", operatorText("SerialOptions", "carries so many bytes twice, 0 to 1"),
         [](LineFaults& faults, std::string_view value) {
             return readRate(value, faults.duplicates);
         }},
        {"stalls", "RATE",
         operatorText("SerialOptions", "holds the line up for 1.5 s at so many bytes, 0 to 1"),
         [](LineFaults& faults, std::string_view value) { return readRate(value, faults.stalls); }},
        {"wrong-number", "BLOCK",
         operatorText("SerialOptions", "sends this block of a file under a wrong number"),
         [](LineFaults& faults, std::string_view value) {
             return readBlock(value, faults.wrongNumberAt);
         }},
        {"reply", "CODE@BLOCK[xTIMES]",
         operatorText("SerialOptions", "answers this block of a file with that code, 0 to 255"),
         readReply},
        {"abort", "BLOCK", operatorText("SerialOptions", "gives a file up at this block"),
         [](LineFaults& faults, std::string_view value) {
             return readBlock(value, faults.abortAt);
         }},
        {"never-answers", "",
         operatorText("SerialOptions", "lets the program wait when files are asked for"),
         [](LineFaults& faults, std::string_view value) {
             faults.neverAnswers = true;
             return value.empty();
         }},
    };
    return kinds;
}

bool addLineFault(LineFaults& faults, std::string_view text) {
    const std::size_t equals = std::min(text.find('='), text.size());
    const auto found =
        std::ranges::find(lineFaultKinds(), text.substr(0, equals), &LineFaultKind::name);
    if (found == lineFaultKinds().end())
        return false;
    LineFaults changed = faults;
    if (!found->apply(changed, text.substr(std::min(equals + 1, text.size()))))
        return false;
    faults = changed;
    return true;
}
