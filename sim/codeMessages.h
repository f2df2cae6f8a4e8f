#pragma once

#include "sim/message.h"
#include "sim/protocols.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zint {

using TroubleCodes = std::vector<std::uint16_t>;

/// The two bytes of a trouble code such as "P0133"; nothing for a text of another form.
std::optional<std::uint16_t> troubleCodeBytes(std::string_view text);

/// @throws std::invalid_argument when a text is no trouble code
TroubleCodes parseTroubleCodes(const std::vector<std::string>& texts);

/// The messages that tell codes: one behind their count, or several of three codes without one.
/// @param mode 03, 07 or 0A
Messages codeMessages(std::uint8_t mode, const TroubleCodes& codes, Framing framing);

} // namespace zint
