#pragma once

#include "InstrumentPage.h"
#include "KeyLog.h"

/// The last keys received, in hexadecimal and by name. Every key is for looking at here, the
/// arrows too; only Escape and the labelled soft keys do something.
class KeysPage : public InstrumentPage {
public:
    /// Both are the instrument's and outlive the page.
    KeysPage(const std::string& name, KeyLog& log) : m_name(name), m_log(log) {}

    softkeys::Labels softKeyLabels() const override;
    void draw(InstrumentScreen& screen) const override;
    KeyOutcome applyKey(std::uint16_t code) override;

private:
    const std::string& m_name;
    KeyLog& m_log;
};
