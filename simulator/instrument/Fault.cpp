#include "Fault.h"

#include "Packet.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

void Fault::alterPackets(std::vector<std::string>&) {}
void Fault::alterFrames(Delivery&) {}
void Fault::alterWrites(Delivery&) {}

namespace {

constexpr std::string_view frameHead = "<D>";

bool isBundle(std::string_view packet) {
    const auto view = packet::parse(packet);
    return view && view->type == "BNDL";
}

/// Goes round a list for ever.
template <typename Value, std::size_t Size>
class Cycle {
public:
    explicit constexpr Cycle(const std::array<Value, Size>& values) : m_values(values) {}
    const Value& next() { return m_values.at(m_next++ % Size); }

private:
    std::array<Value, Size> m_values;
    std::size_t m_next = 0;
};

/// Puts what `make` returns for each element in front of it.
template <typename Make>
void insertBeforeEach(std::vector<std::string>& list, Make make) {
    std::vector<std::string> longer;
    for (std::string& element : list) {
        if (std::string inserted = make(element); !inserted.empty())
            longer.push_back(std::move(inserted));
        longer.push_back(std::move(element));
    }
    list = std::move(longer);
}

class SingleBytes : public Fault {
public:
    void alterWrites(Delivery& delivery) override {
        std::vector<std::string> bytes;
        for (const std::string& write : delivery.writes) {
            for (const char byte : write)
                bytes.emplace_back(1, byte);
        }
        delivery.writes = std::move(bytes);
    }
};

class StrayBytes : public Fault {
public:
    void alterFrames(Delivery& delivery) override {
        using namespace std::string_literals;
        insertBeforeEach(delivery.writes, [](const std::string&) { return "\r\n\0D>\xFF"s; });
    }
};

class UnknownTags : public Fault {
public:
    void alterFrames(Delivery& delivery) override {
        // Text that a peer which does not look at the tag would show to its operator.
        const std::string chat = packet::build("CHAT", "unknown tag");
        insertBeforeEach(delivery.writes, [this, &chat](const std::string&) {
            return packet::bundle(std::string("<").append(m_tags.next()).append(">"), chat);
        });
    }

private:
    Cycle<std::string_view, 4> m_tags{{"X", "", "<D", "DD"}};
};

class UnknownTypes : public Fault {
public:
    void alterPackets(std::vector<std::string>& packets) override {
        insertBeforeEach(packets, [this](const std::string&) {
            return packet::build(m_types.next(), "unknown type");
        });
    }

private:
    Cycle<std::string_view, 5> m_types{{"ZZZZ", "bndl", "SOFT", "VARS", "FXFR"}};
};

class TruncatedItems : public Fault {
public:
    void alterPackets(std::vector<std::string>& packets) override {
        // Two bytes less leave enough of the shortest item to be seen as an item that is cut off.
        insertBeforeEach(packets, [](const std::string& packet) {
            return isBundle(packet) ? packet.substr(0, packet.size() - 2) : std::string();
        });
    }
};

class OversizedItems : public Fault {
public:
    void alterPackets(std::vector<std::string>& packets) override {
        insertBeforeEach(packets, [this](const std::string& packet) {
            if (!isBundle(packet))
                return std::string();
            constexpr std::size_t itemHeader = 5;
            const auto rest =
                static_cast<std::uint32_t>(packet.size() - packet::headerSize - itemHeader);
            const std::uint32_t length = m_lengths.next();
            std::string damaged = packet;
            damaged.replace(packet::headerSize + 1, 4,
                            packet::fourByteValue(length == oneTooMany ? rest + 1 : length));
            return damaged;
        });
    }

private:
    static constexpr std::uint32_t oneTooMany = 0;

    Cycle<std::uint32_t, 3> m_lengths{{oneTooMany, 0x80000000U, 0xFFFFFFFFU}};
};

/// Lets the first frame pass, so that there is something to lose, and stops in the middle of the
/// next.
class StopsHalfway : public Fault {
public:
    explicit StopsHalfway(Delivery::Ending ending) : m_ending(ending) {}

    void alterFrames(Delivery& delivery) override {
        if (std::exchange(m_first, false) || delivery.writes.empty())
            return;
        std::string& last = delivery.writes.back();
        last.resize(last.size() / 2);
        delivery.ending = m_ending;
    }

private:
    Delivery::Ending m_ending;
    bool m_first = true;
};

template <typename Kind>
std::unique_ptr<Fault> makeFault() {
    return std::make_unique<Kind>();
}

/// Says where the translations of a text stand that is shown elsewhere.
constexpr const char* operatorText(const char* /*context*/, const char* text) {
    return text;
}

} // namespace

const std::vector<FaultKind>& faultKinds() {
    static const std::vector<FaultKind> kinds{
        {"single-bytes", operatorText("SimulatorOptions", "sends every byte in a write of its own"),
         makeFault<SingleBytes>},
        {"stray-bytes",
         operatorText("SimulatorOptions", "sends bytes between the frames that belong to none"),
         makeFault<StrayBytes>},
        {"unknown-tags",
         operatorText("SimulatorOptions", "sends frames with unknown tags in between"),
         makeFault<UnknownTags>},
        {"unknown-types",
         operatorText("SimulatorOptions", "sends packets of unknown types in between"),
         makeFault<UnknownTypes>},
        {"truncated-items",
         operatorText("SimulatorOptions", "sends each screen update cut off first, then whole"),
         makeFault<TruncatedItems>},
        {"oversized-items",
         operatorText("SimulatorOptions",
                      "sends each screen update with an item too long first, then whole"),
         makeFault<OversizedItems>},
        {"half-frame",
         operatorText("SimulatorOptions",
                      "sends one whole frame, then half a frame, then nothing more"),
         []() -> std::unique_ptr<Fault> {
             return std::make_unique<StopsHalfway>(Delivery::Ending::FallSilent);
         }},
        {"abrupt-close",
         operatorText("SimulatorOptions",
                      "sends one whole frame, then half a frame, then resets the connection"),
         []() -> std::unique_ptr<Fault> {
             return std::make_unique<StopsHalfway>(Delivery::Ending::Reset);
         }},
    };
    return kinds;
}

const FaultKind* faultKindNamed(std::string_view name) {
    const auto found = std::ranges::find(faultKinds(), name, &FaultKind::name);
    return found == faultKinds().end() ? nullptr : &*found;
}

Delivery FaultChain::deliver(const std::string& packet) {
    std::vector<std::string> packets{packet};
    for (const auto& fault : m_faults)
        fault->alterPackets(packets);
    Delivery delivery;
    for (const std::string& one : packets)
        delivery.writes.push_back(packet::bundle(frameHead, one));
    for (const auto& fault : m_faults)
        fault->alterFrames(delivery);
    for (const auto& fault : m_faults)
        fault->alterWrites(delivery);
    return delivery;
}
