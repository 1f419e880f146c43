#pragma once

#include "InstrumentPage.h"
#include "MessageLog.h"

/// The messages between the operator and the person at the instrument.
class MessagesPage : public InstrumentPage {
public:
    /// Both are the instrument's and outlive the page.
    MessagesPage(const std::string& name, MessageLog& log) : m_name(name), m_log(log) {}

    softkeys::Labels softKeyLabels() const override;
    void draw(InstrumentScreen& screen) const override;
    KeyOutcome applyKey(std::uint16_t code) override;

private:
    const std::string& m_name;
    MessageLog& m_log;
};
