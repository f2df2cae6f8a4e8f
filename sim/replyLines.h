#pragma once

#include "sim/vehicle.h"

#include <string>
#include <vector>

namespace zint {

/// How an adapter writes what a vehicle sent.
struct ReplyFormat {
    Framing framing = Framing::shortMessages;
    bool headers = false;
    bool blanks = true;        ///< between bytes
    bool trailingBlank = true; ///< and behind the last one
};

/// The lines for one message of the engine computer, without line ends. A message of more than seven bytes
/// takes several lines, numbered frames behind a line that tells the length.
std::vector<std::string> replyLines(MessageView message, const ReplyFormat& format);

} // namespace zint
