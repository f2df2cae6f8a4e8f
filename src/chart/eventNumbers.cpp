#include "chart/eventNumbers.h"

#include "shared/runTimeError.h"

namespace zint {

std::optional<double> eventNumber(const DesignEntry& event, std::int32_t raw)
{
    try {
        return convertedNumber(event.conversion, raw);
    } catch (const RunTimeError&) { // too large for its unit
        return std::nullopt;
    }
}

} // namespace zint
