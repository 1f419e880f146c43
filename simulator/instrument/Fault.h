#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// What goes out onto the wire for one packet.
struct Delivery {
    enum class Ending {
        CarryOn,
        FallSilent, ///< nothing more is ever sent, the connection stays
        Reset,      ///< the connection is reset
    };

    std::vector<std::string> writes; ///< each a write of its own, in this order
    Ending ending = Ending::CarryOn; ///< what happens behind the last write
};

/// One way in which an instrument, or the line to it, misbehaves. Each of the three stages that a
/// packet passes can be altered; a fault overrides those that it is about.
class Fault {
public:
    Fault() = default;
    Fault(const Fault&) = delete;
    Fault& operator=(const Fault&) = delete;
    virtual ~Fault() = default;

    /// The packets that are sent; at first the one that is due.
    virtual void alterPackets(std::vector<std::string>& packets);

    /// The frames around them, each a write; at first one for each packet.
    virtual void alterFrames(Delivery& delivery);

    /// How the bytes are cut into writes.
    virtual void alterWrites(Delivery& delivery);
};

/// What can be asked for by name.
struct FaultKind {
    std::string_view name;
    const char* description; ///< English, for translation
    std::unique_ptr<Fault> (*make)();
};

/// Every fault there is, in the order in which help lists them.
const std::vector<FaultKind>& faultKinds();

/// The fault of that name, or null.
const FaultKind* faultKindNamed(std::string_view name);

/// Everything that is wrong with one connection.
class FaultChain {
public:
    /// Adds a fault; they apply in the order in which they were added.
    void add(std::unique_ptr<Fault> fault) { m_faults.push_back(std::move(fault)); }

    /// What goes out for a packet; without faults, its frame in one write.
    Delivery deliver(const std::string& packet);

private:
    std::vector<std::unique_ptr<Fault>> m_faults;
};
