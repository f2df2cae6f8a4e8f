#pragma once

#include "sim/message.h"
#include "sim/protocols.h"
#include "sim/unitKind.h"

#include <cstdint>

namespace zint {

/// The answer to mode 05, the tests of the oxygen sensors: a constant, or a value between its limits.
/// @param request behind the mode: test and sensor
Messages sensorTests(UnitKind unit, MessageView request);

/// The answer to mode 06, the results of the monitors: records behind each other on CAN, elsewhere a message
/// for each limit.
/// @param request behind the mode: the monitor, or the test
/// @param cleared nothing has run since the codes were cleared
Messages monitorResults(UnitKind unit, Framing framing, MessageView request, bool cleared);

} // namespace zint
