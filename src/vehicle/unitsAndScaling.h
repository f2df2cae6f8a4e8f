#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace zint {

/// What a 16-bit value of mode 06 stands for: raw * factor + offset, in the unit.
struct Scaling {
    double factor = 1;
    double offset = 0;
    std::string_view unit; ///< empty for plain numbers
    bool isSigned = false; ///< the raw value is in two's complement

    bool operator==(const Scaling&) const = default;
};

/// The scaling of an id; nothing for one that the standard does not define (SAE J1979, units and scaling).
/// Values of ids from 81 on are signed, also of those that it leaves open.
std::optional<Scaling> scalingOf(std::uint8_t id);

} // namespace zint
