#pragma once

#include "terminal/terminalOptions.h"

#include <string>
#include <string_view>

namespace zint {

/// A line of a reply as the terminal shows it.
struct TextReply {
    std::string text;        ///< without a line end
    bool overflowed = false; ///< a number exceeds signed 32 bits; from it on the text is as it was received
};

/// Shows hexadecimal numbers in another base. From a character on that belongs to no number (a letter behind
/// F, also a small one) the rest of the line is shown as it was received, as in "NO DATA".
/// @param line what was received; its first CR ends it
TextReply showTextReply(std::string_view line, NumberBase base);

} // namespace zint
