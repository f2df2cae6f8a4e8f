#pragma once

#include "vehicle/busProtocol.h"
#include "vehicle/unitReading.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace zint {

/// How a control unit has failed to answer a request, when asking once more did not help either.
enum class Shortfall {
    damaged, ///< a part of its answer is missing or damaged
    busy,    ///< it has asked for patience, and the answer has not come
    silent,  ///< it lists what was asked, and has not answered while others may have
};

/// All that a report has read of a vehicle and of the adapter in between.
struct VehicleFacts {
    std::chrono::system_clock::time_point time{};
    std::string adapter; ///< as it names itself, "ELM327 v1.5"
    std::string device;  ///< its further description; empty: it has none
    std::string voltage; ///< of the battery, as the adapter measures it: "12.6V"
    BusProtocol protocol = BusProtocol::unknown;

    UnitReadings units;

    /// What came in place of an answer, by request, when asking once more did not help either; also what the
    /// adapter told of a reply that it has cut short.
    std::map<std::string, ReplyError> failures;
    /// What is amiss with the answers of single units, by request and control unit.
    std::map<std::string, std::map<std::string, Shortfall>> shortfalls;
    /// The codes of refusals (7F), by request and control unit.
    std::map<std::string, std::map<std::string, std::uint8_t>> refusals;
    bool isQuick = false; ///< modes 05, 06, 09 and live values were left out
    bool isWhole = false; ///< read to the end; else it was stopped, or it failed

    /// What is known of a unit; made when it is not known yet.
    UnitReading& unit(const std::string& name) { return readingOf(units, name); }
};

} // namespace zint
