#pragma once

#include "doctor/finding.h"
#include "link/portInspector.h"
#include "link/portLocation.h"
#include "vehicle/vehicleReply.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// From what was observed to what is most likely wrong.
namespace zint {

/// Why there is no port. @param areOthersThere whether the machine has any
Finding missingPort(const PortLocation& location, const PortFacts& facts, bool areOthersThere);

/// Why a port could not be opened.
struct OpenFailure {
    OpenTrouble trouble = OpenTrouble::unknown;
    std::string text; ///< the system's
    PortLocation location;
    PortFacts facts;
    std::vector<std::string> holders;
    std::string description; ///< of the device
};

Finding openingTrouble(const OpenFailure& failure);

/// What came while no speed brought an answer.
struct SpeedSearch {
    bool hasNoise = false;
    std::string text; ///< readable, without a prompt
    std::size_t speeds = 0;
};

Finding missingAnswer(const SpeedSearch& search, const PortLocation& location, const PortFacts& facts);

/// What is wrong with a supply voltage. @param answer to "ATRV" without echo and prompt
std::optional<Finding> supplyTrouble(std::string_view answer);

/// "12.6V" as a number; nothing for any other text.
std::optional<double> voltsIn(std::string_view answer);

std::string voltsText(double volts); ///< "12.6 V"

/// What has come of the first request to the vehicle.
struct VehicleEvidence {
    ReplyError error = ReplyError::none;
    std::string text; ///< the reply without echo and prompt
    std::optional<double> volts;
    bool isInTime = true;
    std::string fixedProtocol; ///< that the adapter was told to use, in words; empty: it chooses by itself
};

/// Why no control unit has answered.
Finding vehicleTrouble(const VehicleEvidence& evidence);

/// Whether it is worth asking once more before that counts.
bool mayPass(ReplyError error);

} // namespace zint
