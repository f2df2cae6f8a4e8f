#pragma once

#include "sim/message.h"
#include "sim/protocols.h"
#include "sim/unitKind.h"

namespace zint {

/// The answer to mode 09: the vehicle's number, calibrations, counters, the unit's name. On CAN each comes in
/// one message behind a count of items; elsewhere in messages of four bytes, of which another type tells the
/// number.
/// @param request behind the mode: the type
Messages vehicleInformation(UnitKind unit, Framing framing, MessageView request);

} // namespace zint
