#pragma once

#include "InstrumentPage.h"
#include "InstrumentReadings.h"
#include "KeyLog.h"
#include "MessageLog.h"
#include "PageNavigation.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// How an instrument starts.
struct InstrumentSettings {
    std::string name = "GX-7100"; ///< shown in its title bar and said in its messages; UTF-8
    std::uint32_t seed = 1;       ///< the same seed gives the same readings
    PageId page = PageId::Home;   ///< what it shows first
    std::chrono::milliseconds clock = std::chrono::hours(10); ///< time of day at the start
};

/// A GX-7100 as seen through its wire: packets come in, packets go out, time goes by when it is
/// told. It knows nothing of how packets travel; no thread, no clock and no chance of its own, so
/// the same calls always give the same bytes.
class Instrument {
public:
    /// What a received packet leads to.
    struct Response {
        std::vector<std::string> packets; ///< to send now, in this order
        bool screenChanged = false;       ///< updatePacket() is to be sent as well
        std::optional<std::uint16_t> key; ///< the key code, if the packet was a key
    };

    explicit Instrument(InstrumentSettings settings);

    /// Takes one instrument packet. Anything that is not one, or of an unknown type, does nothing.
    Response receive(std::string_view packet);

    /// Lets time go by; true when the screen has changed of itself.
    bool tick(std::chrono::milliseconds elapsed);

    /// The packet that carries the screen as it is now.
    std::string updatePacket() const { return screen().updatePacket(); }

    InstrumentScreen screen() const;
    PageId page() const { return m_page; }
    const std::string& name() const { return m_name; }

private:
    Response receiveKey(std::string_view body);
    Response receiveChat(std::string_view body);
    void say(Response& response, const std::string& text);
    InstrumentPage& currentPage() const { return *m_pages.at(static_cast<std::size_t>(m_page)); }

    std::string m_name;
    InstrumentReadings m_readings;
    KeyLog m_keyLog;
    MessageLog m_messages;
    std::array<std::unique_ptr<InstrumentPage>, allPages.size()> m_pages;
    PageId m_page;
};
