#pragma once

#include "catalogue/design.h"
#include "catalogue/standardConversion.h"
#include "parameters/ownParameters.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace zint {

/// A text that names no parameter, or more than one.
class UnknownParameter : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The events that a user names, each polled in every loop: parameters of the standard ("0C", "010C") with
/// all of their fields, own parameters by their requests ("221940"), both by their names or by words that one
/// of them has alone, and other requests as they are. Commas part several in one text.
/// @throws UnknownParameter for a text that names none, and for more than Design::maxEvents
std::vector<DesignEntry> eventsNamed(const std::vector<std::string>& texts, const OwnParameters& own,
                                     UnitSystem units);

} // namespace zint
