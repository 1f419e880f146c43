#pragma once

#include "EntryField.h"
#include "InstrumentPage.h"

/// A text field that echoes what is typed, with the cursor in it; its text can be sent to the
/// operator.
class EntryPage : public InstrumentPage {
public:
    /// The name is the instrument's and outlives the page.
    explicit EntryPage(const std::string& name) : m_name(name) {}

    softkeys::Labels softKeyLabels() const override;
    void draw(InstrumentScreen& screen) const override;
    KeyOutcome applyKey(std::uint16_t code) override;

private:
    const std::string& m_name;
    EntryField m_field;
    InstrumentScreen::CursorShape m_cursor = InstrumentScreen::CursorShape::Underline;
};
