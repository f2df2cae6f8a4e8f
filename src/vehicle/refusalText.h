#pragma once

#include <cstdint>
#include <string>

namespace zint {

/// What a control unit means by the code of a refusal: "service not supported (11)".
std::string refusalText(std::uint8_t code);

} // namespace zint
