#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace zint {

using Bytes = std::vector<std::uint8_t>;
using BytesView = std::span<const std::uint8_t>;

} // namespace zint
