#pragma once

#include "sim/controlUnit.h"
#include "sim/message.h"
#include "sim/simulationOptions.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zint {

/// What one control unit answers.
struct UnitAnswer {
    UnitAddress from;
    Messages waits; ///< come first: the answer takes a while
    Messages messages;
};

/// A vehicle with one or more control units, on an endless repeatable drive.
///
/// It outlives the adapters that are plugged in one after another: cleared codes stay cleared.
class Vehicle {
public:
    /// @throws std::invalid_argument when an option holds a trouble code of a wrong form, or when a vehicle
    /// of older protocols than CAN is to tell all parameters: most don't fit into its messages
    explicit Vehicle(const VehicleOptions& options = {});

    /// The number by which adapters know its protocol.
    unsigned protocol() const { return protocol_; }
    const ProtocolTraits& traits() const { return protocolTraits(protocol_); }
    bool ignitionOn() const { return ignitionOn_; }

    /// In the socket, as adapters tell it. The generator runs, or does not.
    std::string voltage() const { return !voltage_.empty() ? voltage_ : ignitionOn_ ? "13.1V" : "12.3V"; }

    /// How long an answer takes that is announced.
    std::chrono::microseconds waitingTime() const
    {
        return pendingResponse_.value_or(std::chrono::seconds(0));
    }

    /// What the units answer that a header reaches, in the order in which it comes; none for what no unit
    /// supports. The drive begins with the first request.
    /// @param header the last 24 bits
    /// @param now any steady time, the same for all requests
    std::vector<UnitAnswer> answers(std::uint32_t header, MessageView request, std::chrono::microseconds now);

    /// The messages that answer a request to all units.
    Messages answer(MessageView request, std::chrono::microseconds now);

private:
    bool isDroppedOut(std::size_t unit) const;
    void appendAnswer(std::vector<UnitAnswer>& answers, ControlUnit& unit, std::uint32_t header,
                      MessageView request) const;

    unsigned protocol_;
    bool ignitionOn_;
    std::string voltage_;
    std::optional<std::chrono::microseconds> pendingResponse_;
    int dropOutEvery_;
    std::optional<std::chrono::microseconds> moment_;
    int foreignAnswerEvery_;
    std::vector<ControlUnit> units_;
    int requests_ = 0;
    std::optional<std::chrono::microseconds> started_;
    std::chrono::microseconds driven_{0};
};

} // namespace zint
