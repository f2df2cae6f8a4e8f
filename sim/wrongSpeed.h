#pragma once

#include <string>
#include <string_view>

namespace zint {

/// What a receiver makes of bytes that were sent at another speed: it samples the bits of the line (a start
/// bit, eight data bits from the lowest on, a stop bit) at the times of its own. A byte whose stop bit is
/// missing counts, as drivers take it.
std::string heardAtOtherSpeed(std::string_view sent, int sentAt, int heardAt);

} // namespace zint
