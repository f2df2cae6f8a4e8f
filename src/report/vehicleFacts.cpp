#include "report/vehicleFacts.h"

#include <algorithm>

namespace zint {

UnitReading& VehicleFacts::unit(const std::string& name)
{
    const auto found = std::ranges::find(units, name, &std::pair<std::string, UnitReading>::first);
    return found != units.end() ? found->second : units.emplace_back(name, UnitReading()).second;
}

} // namespace zint
