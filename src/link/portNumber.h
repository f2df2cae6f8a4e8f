#pragma once

#include <array>
#include <string>

namespace zint {

/// The number of a port as users see it: 1 for "com1". A position in a list is another thing.
enum class PortNumber : int {};

inline constexpr std::array allPorts{PortNumber{1}, PortNumber{2}, PortNumber{3}, PortNumber{4},
                                     PortNumber{5}, PortNumber{6}, PortNumber{7}, PortNumber{8}};

/// "com1" for 1; it stands in front of each status.
inline std::string portName(PortNumber port) { return "com" + std::to_string(static_cast<int>(port)); }

} // namespace zint
