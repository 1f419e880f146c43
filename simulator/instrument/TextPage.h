#pragma once

#include "InstrumentPage.h"

/// Everything that the text screen can show: the attributes, the symbols, box pieces and blocks.
class TextPage : public InstrumentPage {
public:
    /// The name is the instrument's and outlives the page.
    explicit TextPage(const std::string& name) : m_name(name) {}

    softkeys::Labels softKeyLabels() const override;
    void draw(InstrumentScreen& screen) const override;
    KeyOutcome applyKey(std::uint16_t code) override;

private:
    const std::string& m_name;
    int m_rotation = 0; ///< by how many places the four attributes are turned
};
