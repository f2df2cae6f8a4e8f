#pragma once

#include "report/vehicleFacts.h"

#include <string>
#include <vector>

namespace zint {

/// What became of a request that has brought no whole answer.
struct RequestOutcome {
    enum class Kind {
        notSupported,  ///< the unit says so, or it is silent where silence says so
        refusedForNow, ///< the conditions are not right
        refused,       ///< for another reason
        busy,          ///< the unit has asked for patience, and no answer has come
        noAnswer,
        damaged, ///< a part of the answer is missing or damaged
    };

    std::string request; ///< as sent: "0A"
    std::string subject; ///< what it asks for: "permanent codes"
    std::string unit;    ///< its name; empty where no unit has answered
    Kind kind = Kind::noAnswer;
    std::string text; ///< the outcome in words: "service not supported (11)"
};

/// The outcomes of all requests of a report that have brought no whole answer, in the order of the requests.
/// "None" is a whole answer. That a unit does not support what was asked of another one is left out.
std::vector<RequestOutcome> requestOutcomes(const VehicleFacts& facts);

} // namespace zint
