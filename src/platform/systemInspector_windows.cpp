#include "platform/systemInspector.h"
#include "platform/systemPorts.h"

#include <qt_windows.h>

#include <cerrno>

namespace zint {

PortFacts SystemInspector::facts(const std::string& location) const
{
    PortFacts facts;
    facts.path = location;
    facts.exists = location.empty() || SystemPorts().exists(location);
    return facts;
}

std::vector<std::string> SystemInspector::holders(const std::string& /*location*/) const { return {}; }

OpenTrouble SystemInspector::troubleOf(int number) const
{
    switch (number) {
    case ERROR_FILE_NOT_FOUND:
        return OpenTrouble::missing;
    case ERROR_ACCESS_DENIED:
        return OpenTrouble::inUse; // ports have no owners here
    case ERROR_SEM_TIMEOUT:        // a Bluetooth adapter that is off
    case ETIMEDOUT:
    case ENETUNREACH:
        return OpenTrouble::hostDown;
    case ECONNREFUSED:
        return OpenTrouble::refused;
    default:
        return OpenTrouble::unknown;
    }
}

} // namespace zint
