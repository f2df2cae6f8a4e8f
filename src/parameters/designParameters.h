#pragma once

#include "catalogue/design.h"
#include "parameters/ownParameters.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// Own parameters in a design: their definitions, and the file that carries these beside the design's.
namespace zint {

constexpr bool isOwnConversion(std::int32_t conversion) { return conversion >= OwnParameter::firstNumber; }

/// The event that polls an own parameter.
DesignEntry eventFor(const OwnParameterPointer& own);

/// The events whose definitions were looked for and not found.
struct Undefined {
    std::vector<std::int32_t> missing;  ///< numbers that the table does not have, each once
    std::vector<std::size_t> differing; ///< places of events that ask for something else than their number's
                                        ///< parameter; it is another one

    bool isNone() const { return missing.empty() && differing.empty(); }
    bool operator==(const Undefined&) const = default;
};

/// Gives each event with an own parameter's number its definition, and takes it from the others.
Undefined define(Design& design, const OwnParameters& table);

/// The file of the definitions beside a design's: "car.parameters.json" beside "car.obc".
std::string definitionsPath(const std::string& designPath);

/// The definitions that the design's events have.
OwnParameters definitionsOf(const Design& design);

/// What becomes of a design's definitions in a table.
struct TakenDefinitions {
    std::vector<OwnParameterPointer> added;       ///< as the table has them now
    std::map<std::int32_t, std::int32_t> numbers; ///< the table's of the design's
};

/// Takes the definitions that a design uses into a table: one that is equal to one of the table's, but for
/// the number, takes that number; another one gets a free number, and another name if its own is taken. The
/// design stays; with a copy of a table, this tells what would be taken over.
TakenDefinitions takeDefinitions(const Design& design, const OwnParameters& definitions,
                                 OwnParameters& table);

/// Gives the design's events the numbers of the table.
void renumber(Design& design, const std::map<std::int32_t, std::int32_t>& numbers);

} // namespace zint
