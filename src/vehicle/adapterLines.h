#pragma once

#include "vehicle/bytes.h"
#include "vehicle/vehicleReply.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

/// An adapter's reply as lines: those of hexadecimal digits, and what its texts say.
namespace zint {

/// A line of hexadecimal digits.
struct HexLine {
    Bytes digits;               ///< the value of each, 0 to 15
    std::size_t firstGroup = 0; ///< how many stand before the first blank; all where there is none
    std::optional<int> index;   ///< the digit in front of a colon; it is none of the digits

    /// The bytes from a digit on, without the half that may be left.
    Bytes bytesFrom(std::size_t start) const;
};

/// The digits of a text that holds nothing else, but blanks and an index; nothing for any other text.
/// Bytes 00 are skipped: adapters drop them in between.
std::optional<HexLine> hexLine(std::string_view text);

struct AdapterLines {
    std::vector<HexLine> lines;              ///< without the echo of the request
    ReplyError textError = ReplyError::none; ///< the first that a text tells
    bool hasPrompt = false;                  ///< the reply ends in one
    bool tellsProgress = false;              ///< "SEARCHING..." or its like
    bool isAcknowledged = false;             ///< by "OK", which tells of no progress
    bool isEmpty = true; ///< no data and no unknown text: line ends, prompt, echo and progress alone
};

AdapterLines adapterLines(std::string_view request, std::string_view reply);

} // namespace zint
