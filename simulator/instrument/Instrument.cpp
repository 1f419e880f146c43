#include "Instrument.h"

#include "EntryPage.h"
#include "GraphicsPage.h"
#include "HomePage.h"
#include "KeysPage.h"
#include "MessagesPage.h"
#include "Packet.h"
#include "TextPage.h"

#include <algorithm>

namespace {
/// Bytes of a chat message that are echoed; the rest is as good as lost on so small a screen.
constexpr std::size_t longestEcho = 1024;

/// What a "FXTO" body brings: "ID:", a name, a line feed and the data.
std::string describeFile(std::string_view body) {
    constexpr std::size_t longestName = 40;
    constexpr std::string_view lead = "ID:";
    if (body.starts_with(lead))
        body.remove_prefix(lead.size());
    const std::size_t nameEnd = body.find('\n');
    const bool named = nameEnd != std::string_view::npos;
    std::string text(named ? body.substr(0, std::min(nameEnd, longestName)) : "unnamed");
    return text.append(": ")
        .append(std::to_string(body.size() - (named ? nameEnd + 1 : 0)))
        .append(" bytes");
}
} // namespace

Instrument::Instrument(InstrumentSettings settings)
    : m_name(std::move(settings.name)), m_readings(settings.seed, settings.clock),
      m_pages{std::make_unique<HomePage>(m_name, m_readings),
              std::make_unique<TextPage>(m_name),
              std::make_unique<EntryPage>(m_name),
              std::make_unique<GraphicsPage>(m_name, m_readings),
              std::make_unique<KeysPage>(m_name, m_keyLog),
              std::make_unique<MessagesPage>(m_name, m_messages)},
      m_page(settings.page) {}

Instrument::Response Instrument::receive(std::string_view bytes) {
    const std::optional<packet::View> packet = packet::parse(bytes);
    if (!packet)
        return {};
    if (packet->type == "KEYS")
        return receiveKey(packet->body);
    if (packet->type == "CHAT")
        return receiveChat(packet->body);
    if (packet->type == "COMI") {
        m_messages.add("→", packet::untilNul(packet->body));
        return {{}, m_page == PageId::Messages, {}};
    }
    if (packet->type == "FXTO") {
        m_messages.add("◾", describeFile(packet->body));
        return {{}, m_page == PageId::Messages, {}};
    }
    return {};
}

Instrument::Response Instrument::receiveKey(std::string_view body) {
    if (body.size() < 2)
        return {};
    const auto byteAt = [body](std::size_t i) { return static_cast<unsigned char>(body[i]); };
    const auto code = static_cast<std::uint16_t>((byteAt(0) << 8U) | byteAt(1));
    m_keyLog.add(code);
    Response response{{}, true, code};
    const InstrumentPage::KeyOutcome outcome = currentPage().applyKey(code);
    if (!outcome.taken)
        m_page = pageAfterKey(m_page, code).value_or(m_page);
    if (!outcome.chat.empty())
        say(response, outcome.chat);
    return response;
}

Instrument::Response Instrument::receiveChat(std::string_view body) {
    const std::string_view text = packet::untilNul(body).substr(0, longestEcho);
    m_messages.add("▶", text);
    Response response{{}, m_page == PageId::Messages, {}};
    say(response, std::string(text));
    return response;
}

void Instrument::say(Response& response, const std::string& text) {
    m_messages.add("◂", text);
    response.packets.push_back(packet::build("CHAT", m_name + ": " + text));
}

bool Instrument::tick(std::chrono::milliseconds elapsed) {
    m_readings.step(elapsed);
    return currentPage().isLive();
}

InstrumentScreen Instrument::screen() const {
    InstrumentScreen screen;
    const InstrumentPage& page = currentPage();
    page.draw(screen);
    if (!screen.graphics())
        softkeys::draw(screen, page.softKeyLabels());
    return screen;
}
