#pragma once

#include "catalogue/conversion.h"
#include "catalogue/design.h"

#include <cstdint>
#include <optional>
#include <string>

/// What is drawn of an event.
namespace zint {

/// What an event is called.
inline const std::string& eventName(const DesignEntry& event) { return event.name(); }

/// Its unit without blanks; may be empty.
inline std::string eventUnit(const DesignEntry& event) { return std::string(unitName(event.conversion)); }

/// A raw value in the event's unit; nothing where that is no number, or too large for the unit.
std::optional<double> eventNumber(const DesignEntry& event, std::int32_t raw);

/// Whether its values are numbers at all.
inline bool hasNumbers(const DesignEntry& event) { return eventNumber(event, 0).has_value(); }

} // namespace zint
