#pragma once

#include "sim/pidTable.h"
#include "sim/simulationOptions.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace zint {

/// The data bytes of one request or answer, without header, checksum or frame numbers.
using Message = std::vector<std::uint8_t>;
using Messages = std::vector<Message>;
using MessageView = std::span<const std::uint8_t>;

/// The two bytes of a trouble code such as "P0133"; nothing for a text of another form.
std::optional<std::uint16_t> troubleCodeBytes(std::string_view text);

/// A vehicle with one engine computer, on an endless repeatable drive.
///
/// It outlives the adapters that are plugged in one after another: cleared codes stay cleared.
class Vehicle {
public:
    /// @throws std::invalid_argument when an option holds a trouble code of a wrong form
    explicit Vehicle(const VehicleOptions& options = {});

    /// The number by which adapters know its protocol.
    unsigned protocol() const { return protocol_; }
    const ProtocolTraits& traits() const { return protocolTraits(protocol_); }
    bool ignitionOn() const { return ignitionOn_; }

    /// Whether a request with this header (its last 24 bits) reaches the engine computer.
    bool hears(std::uint32_t header) const;

    /// The messages that answer a request, none for what is not supported. The drive begins with the first
    /// request.
    /// @param now any steady time, the same for all requests
    Messages answer(MessageView request, std::chrono::microseconds now);

private:
    struct Service;

    Messages liveData(MessageView request);
    Messages freezeFrame(MessageView request);
    Messages storedCodes(MessageView request);
    Messages clearCodes(MessageView request);
    Messages pendingCodes(MessageView request);
    Messages vehicleInformation(MessageView request);

    Messages codeMessages(std::uint8_t mode, const std::vector<std::uint16_t>& codes) const;
    bool appendLiveValue(Message& message, std::uint8_t pid) const;
    std::uint32_t monitorStatus() const;

    unsigned protocol_;
    bool ignitionOn_;
    std::vector<std::uint16_t> storedCodes_;
    std::vector<std::uint16_t> pendingCodes_;
    bool monitorsReset_ = false; // by clearing the codes
    std::optional<std::chrono::microseconds> started_;
    std::chrono::microseconds driven_{0};
};

} // namespace zint
