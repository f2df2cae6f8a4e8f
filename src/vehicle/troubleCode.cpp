#include "vehicle/troubleCode.h"

#include "shared/module1.h"

#include <array>

namespace zint {

std::string_view troubleCodePrefix(int digit)
{
    static constexpr std::array<std::string_view, 16> prefixes = {
        "P0", "P1", "P2", "P3", "C0", "C1", "C2", "C3", "B0", "B1", "B2", "B3", "U0", "U1", "U2", "U3",
    };
    return prefixes.at(static_cast<std::size_t>(digit));
}

std::string troubleCode(std::uint8_t high, std::uint8_t low)
{
    return std::string(troubleCodePrefix(high / 16)) + hexText(high % 16, 1) + hexText(low, 2);
}

} // namespace zint
