#pragma once

#include "sim/pidTable.h"

#include <cstdint>

namespace zint {

/// A value that the maker of a control unit has defined, by its identifier of two bytes (mode 22).
struct MakerValue {
    std::uint16_t identifier;
    UnitKinds units; ///< which have it
    PidData (*encode)(const EngineData&);
};

/// @return null when such a unit does not have it
const MakerValue* findMakerValue(UnitKind unit, std::uint16_t identifier);

} // namespace zint
