#pragma once

#include "vehicle/bytes.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace zint {

/// What stands in front of a refusal, in place of the service's answer.
inline constexpr std::uint8_t refusalSign = 0x7F;

/// The refusal that is none: the unit asks for patience.
inline constexpr std::uint8_t answerFollows = 0x78;

/// A request to the vehicle, and which messages answer it (SAE J1979).
class VehicleRequest {
public:
    /// @param text as sent: pairs of digits, then perhaps one digit, the number of answers to wait for
    explicit VehicleRequest(std::string_view text);

    /// Otherwise it is a command to the adapter. An empty one goes to the vehicle, too: the last one again.
    bool isForVehicle() const { return isForVehicle_; }

    /// Without the number of answers to wait for; empty for a command.
    const Bytes& bytes() const { return bytes_; }

    /// Whether a message is an answer or a refusal: its service fits, and its parameter is one of those
    /// asked. Every service fits an empty request.
    /// @param isCut the message may end anywhere: what there is of it must fit
    bool isAnsweredBy(BytesView message, bool isCut) const;

    /// How many bytes at the front of an answer repeat the request: the service, and behind it the parameter.
    /// For services that this program does not know: the whole request if it stands there.
    std::size_t repeatedIn(BytesView answer) const;

    /// The request as it is where the sender has put the frame's length in front ("02010C"); nothing where
    /// the first byte can be no such length.
    std::optional<VehicleRequest> withoutLength() const;

private:
    VehicleRequest() = default;
    bool hasAsked(BytesView message, bool isCut) const;

    Bytes bytes_;
    bool isForVehicle_ = true;
};

} // namespace zint
