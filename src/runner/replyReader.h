#pragma once

#include "catalogue/design.h"
#include "catalogue/standardConversion.h"
#include "parameters/formula.h"
#include "runner/pollPlan.h"
#include "runner/replyWatch.h"
#include "vehicle/busProtocol.h"
#include "vehicle/unitReading.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zint {

/// What a run has learnt of its vehicle in front of its first request.
struct VehicleTraits {
    BusProtocol protocol = BusProtocol::unknown;
    UnitReading told; ///< by its units together: what changes how other parameters are read

    /// Takes the reply to one of openingQuestions(). @return whether it came damaged
    bool learn(std::string_view question, std::string_view reply);
};

/// What a run asks in front of its first request, beside the design's own commands: which protocol the
/// vehicle has, for shared requests and headers, how many banks, and which scales it uses. Nothing for what
/// needs none of these.
std::vector<std::string> openingQuestions(const Design& design, bool combines);

/// What a reply tells of an event: a value, or words in its place. Neither: the reply is bad.
struct EventReading {
    std::optional<double> value;
    std::string words; ///< such as "not available", "division by zero"

    bool isBad() const { return !value && words.empty(); }
};

/// Reads the replies of a run.
class ReplyReader {
public:
    /// @param design outlives the reader; its own parameters are defined
    explicit ReplyReader(const Design& design);

    /// One reading for each event of the request.
    struct Reading {
        std::vector<EventReading> events;
        ReplyFit fit = ReplyFit::unknown;
    };
    Reading read(const PollRequest& request, std::string_view reply, const VehicleTraits& vehicle) const;

private:
    static Reading readRaw(const PollRequest& request, std::string_view reply);
    EventReading readOwn(std::size_t event, std::string_view reply, const VehicleTraits& vehicle) const;
    static EventReading readStandard(const StandardConversion& standard, BytesView data,
                                     const UnitReading& told);
    EventReading readData(std::size_t event, BytesView data, const VehicleTraits& vehicle) const;

    const Design& design_;
    std::map<std::size_t, Formula> formulas_; ///< by event
};

} // namespace zint
