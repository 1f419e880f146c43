#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

/// What is wrong with a serial line and with the instrument's side of file transfers.
struct LineFaults {
    /// Chance of each byte, 0 to 1, in either direction.
    double bitErrors = 0;
    double drops = 0;
    double duplicates = 0;
    double stalls = 0;
    std::chrono::milliseconds stall = std::chrono::milliseconds(1500); ///< length of a stall

    /// The block that the instrument sends under a wrong number; 0 for none.
    int wrongNumberAt = 0;
    /// The block at which the instrument gives up: as a receiver it says so, as a sender it falls
    /// silent. 0 for none.
    int abortAt = 0;
    /// What the instrument answers to a block whatever it is like, so many times; at 0 for none.
    int reply = 0;
    int replyAt = 0;
    int replyTimes = 1;
    /// The instrument lets the program wait for ever.
    bool neverAnswers = false;
};

/// One fault that can be asked for by name.
struct LineFaultKind {
    std::string_view name;
    const char* value;       ///< what follows "=", for the help text; empty when nothing does
    const char* description; ///< English, for translation
    /// Reads the value; false when it is none.
    bool (*apply)(LineFaults& faults, std::string_view value);
};

/// Every fault of a line, in the order in which help lists them.
const std::vector<LineFaultKind>& lineFaultKinds();

/// Adds the fault that `text` asks for, as "name" or "name=value"; false when there is none like
/// it.
bool addLineFault(LineFaults& faults, std::string_view text);
