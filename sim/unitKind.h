#pragma once

#include <cstdint>

namespace zint {

/// The control units that can be simulated. The numbers are bits, by which tables tell who has what.
enum class UnitKind : std::uint8_t {
    spark = 1,        ///< an engine with the usual parameters
    sparkNewer = 2,   ///< one that tells more
    diesel = 4,       ///< compression ignition
    transmission = 8, ///< the gearbox
    complete = 16,    ///< an engine with every parameter of the standard
    completeV = 32,   ///< likewise, with four banks of cylinders, other ranges of sensors and full scales
    body = 64,        ///< lights and doors: no unit of the standard, and at no address of it
};

/// Several of them.
using UnitKinds = std::uint8_t;

constexpr UnitKinds only(UnitKind kind) { return static_cast<UnitKinds>(kind); }
constexpr UnitKinds operator|(UnitKind one, UnitKind other)
{
    return static_cast<UnitKinds>(only(one) | only(other));
}
constexpr UnitKinds operator|(UnitKinds some, UnitKind other)
{
    return static_cast<UnitKinds>(some | only(other));
}
constexpr bool contains(UnitKinds kinds, UnitKind kind) { return (kinds & only(kind)) != 0; }

inline constexpr UnitKinds completeEngines = UnitKind::complete | UnitKind::completeV;
inline constexpr UnitKinds newerSparkEngines = completeEngines | UnitKind::sparkNewer;
inline constexpr UnitKinds sparkEngines = newerSparkEngines | UnitKind::spark;
inline constexpr UnitKinds newerEngines = newerSparkEngines | UnitKind::diesel;
inline constexpr UnitKinds dieselTellers = completeEngines | UnitKind::diesel; ///< of what diesels tell
inline constexpr UnitKinds engines = sparkEngines | UnitKind::diesel;
inline constexpr UnitKinds allUnits = engines | UnitKind::transmission;

/// By what a unit is known on the bus.
struct UnitAddress {
    std::uint8_t address = 0x10;  ///< a byte of its header
    std::uint16_t header = 0x7E0; ///< of 11 bits, of requests to it alone; it answers with 8 more
};

/// What sets a unit apart, beside its tables. The monitors stand a bit each, as in parameter 01.
struct UnitTraits {
    UnitKind kind;
    UnitAddress address;
    std::uint8_t continuousTests; ///< B, with the bit for compression ignition
    std::uint8_t otherTests;      ///< C: which it has
    std::uint8_t unfinishedTests; ///< D: which take longer than the simulated drive
    bool isOfStandard = true;     ///< otherwise it hears no request to all, and knows its maker's mode alone
};

const UnitTraits& unitTraits(UnitKind kind);

} // namespace zint
