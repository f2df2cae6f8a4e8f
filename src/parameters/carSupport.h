#pragma once

#include "shared/programValues.h"
#include "vehicle/unitReading.h"

#include <cstdint>
#include <optional>
#include <string>

/// What is known of the parameters of mode 01 that a car supports.
namespace zint {

/// What the bitmaps tell that control units have sent. A parameter is supported if one of them says so; what
/// no bitmap covers is not known.
/// @param source where the readings come from, for the user: "support check"
CarSupport carSupport(const UnitReadings& units, const std::string& source);

/// Takes in what has been read now. It replaces what was known, unless that tells more and agrees with it:
/// then it is the same car.
void learn(CarSupport& known, CarSupport now);

/// Whether a parameter is supported; nothing where that is not known.
std::optional<bool> isSupported(const CarSupport& car, std::uint8_t pid);

} // namespace zint
