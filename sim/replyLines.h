#pragma once

#include "sim/message.h"
#include "sim/protocols.h"
#include "sim/unitKind.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zint {

/// How an adapter writes what a vehicle sent.
struct ReplyFormat {
    const ProtocolTraits* protocol; ///< what the vehicle speaks
    bool headers = false;
    bool blanks = true;                  ///< between bytes
    bool trailingBlank = true;           ///< and behind the last one
    bool autoFormat = true;              ///< frames without their control bytes, where headers are off
    bool showsPadding = false;           ///< of short messages, too
    bool lengthDigit = false;            ///< a frame's number of bytes stands behind its identifier
    bool ownLengthByte = false;          ///< the length stands in a byte of its own, where a header tells one
    std::optional<std::uint8_t> padding; ///< fills each frame up to eight bytes; otherwise 00, and only the
                                         ///< last frame of a long message
};

/// The lines for one message of a control unit, without line ends. On CAN a message of more than seven bytes
/// takes several lines, numbered frames behind a line that tells the length.
std::vector<std::string> replyLines(const UnitAddress& from, MessageView message, const ReplyFormat& format);

/// The identifier of a CAN frame that a control unit sends.
std::uint32_t replyIdentifier(const UnitAddress& from, const ProtocolTraits& protocol);

/// The byte behind a message on a bus: the lowest of the sum, or the remainder by the polynomial of SAE
/// J1850.
std::uint8_t checkByte(CheckByte kind, MessageView message);

} // namespace zint
