#pragma once

#include "report/vehicleFacts.h"

#include <string>

namespace zint {

/// How many codes of a kind all control units have.
int codeCount(const VehicleFacts& facts, CodeKind kind);

/// How many monitors are supported, and how many of them have not completed, of all control units.
struct MonitorCounts {
    int supported = 0;
    int incomplete = 0;
};
MonitorCounts monitorCounts(const VehicleFacts& facts);

/// What a report comes to, in plain words: "2 codes stored, 1 pending. 3 of 8 monitors not ready: an
/// emissions test would fail today." Empty when no control unit has told anything of that.
std::string headlineOf(const VehicleFacts& facts);

} // namespace zint
