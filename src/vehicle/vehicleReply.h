#pragma once

#include "vehicle/busProtocol.h"
#include "vehicle/bytes.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The messages of control units, taken out of an adapter's replies.
namespace zint {

/// What a reply holds in place of an answer, or beside it. Texts of the adapter, unless said otherwise.
enum class ReplyError {
    none,
    noData,
    unableToConnect,
    busInitError,
    busError, ///< also BUS BUSY, FB ERROR
    canError,
    stopped,
    bufferFull,
    dataError,
    rxError,
    lowVoltageReset,
    activityAlert,
    unknownCommand, ///< "?"
    noPrompt,       ///< the reply does not end in a prompt
    empty,          ///< nothing but line ends and the prompt
    garbled,        ///< none of the above, and no message that answers the request
};

/// What one control unit says at once: service and data, without header, length, checksum and padding.
struct UnitMessage {
    /// The CAN identifier of 11 bits ("7E8"); the source's byte of other headers ("10"); "?1", "?2" in the
    /// order of the messages where the reply shows no headers.
    std::string unit;
    Bytes bytes; ///< from the service on: 43 for an answer to 03, 7F for a refusal
    bool isIncomplete =
        false; ///< parts are missing, or the checksum is wrong; the bytes are what there is, if anything

    bool operator==(const UnitMessage&) const = default;
};

/// Of the buses before CAN, in bytes.
inline constexpr std::size_t longestOlderMessage = 7;

struct VehicleReply {
    std::vector<UnitMessage> messages; ///< answers and refusals to the request, in the order of their lines
    ReplyError error = ReplyError::none;
    /// Whether the lines have the form of CAN, whatever the protocol was taken for; nothing where they show
    /// no headers, lengths or numbers.
    std::optional<bool> isCan;
};

/// Reads the reply to a request by the protocol. What the adapter was told of headers, blanks, echo and line
/// feeds does not matter: what the lines show decides.
///
/// A line counts only if it is hexadecimal throughout, fits the protocol and answers the request's service.
/// Doubled messages of a unit count once. Where the protocol is unknown, the lines' form decides.
/// @param request as sent, such as "0902" or "010C1"; without it, any service is taken
VehicleReply readVehicleReply(std::string_view request, std::string_view reply, BusProtocol protocol);

} // namespace zint
