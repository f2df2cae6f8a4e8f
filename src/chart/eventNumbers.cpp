#include "chart/eventNumbers.h"

#include "catalogue/conversion.h"
#include "shared/runTimeError.h"

#include <algorithm>

namespace zint {

std::string eventName(const DesignEntry& event)
{
    return event.description.empty() ? event.code : event.description;
}

std::string eventUnit(const DesignEntry& event)
{
    const std::string_view unit = unitText(event.conversion);
    return std::string(unit.substr(std::min(unit.find_first_not_of(' '), unit.size())));
}

std::optional<double> eventNumber(const DesignEntry& event, std::int32_t raw)
{
    try {
        return convertedNumber(event.conversion, raw);
    } catch (const RunTimeError&) { // too large for its unit
        return std::nullopt;
    }
}

} // namespace zint
