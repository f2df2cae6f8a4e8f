#include "codes/readiness.h"

#include "shared/module1.h"

#include <cstdint>

namespace zint {
namespace {

enum class Source { byteB, bytesCD };

struct Monitor {
    std::string_view label;
    std::string_view name;
    Source source;
    std::int32_t supported;
    std::int32_t incomplete;
    std::string_view firstName = name; ///< until the first report
};

constexpr std::array<Monitor, monitorCount> monitors = {{
    {"misfireLab", "Misfire", Source::byteB, 1, 16},
    {"fuelLab", "Fuel System", Source::byteB, 2, 32},
    {"componentLab", "Component", Source::byteB, 4, 64, "Components"},
    {"catalystLab", "Catalyst", Source::bytesCD, 256, 1},
    {"heatedCatalystLab", "Heated Catalyst", Source::bytesCD, 512, 2},
    {"evapLab", "Evaporative System", Source::bytesCD, 1024, 4},
    {"secAirLab", "Secondary Air", Source::bytesCD, 2048, 8},
    {"acLab", "A/C Refrigerant", Source::bytesCD, 4096, 16},
    {"oxySensorLab", "Oxygen Sensor", Source::bytesCD, 8192, 32},
    {"oxyHeaterLab", "Oxygen Heater", Source::bytesCD, 16384, 64},
    {"egrLab", "EGR System", Source::bytesCD, 32768, 128},
}};

std::string_view resultText(const Monitor& monitor, std::int32_t value)
{
    if (value < 1)
        return " input error"; // 0 too: a vehicle without any of the tests is shown this way on purpose
    if ((value & monitor.supported) == 0)
        return " Test Unsupported";
    if ((value & monitor.incomplete) != 0)
        return " Test Incomplete";
    return " Test OK";
}

} // namespace

std::string_view monitorLabel(std::size_t line) { return monitors.at(line).label; }

ReadinessTexts initialReadiness()
{
    ReadinessTexts texts;
    for (std::size_t i = 0; i < monitorCount; ++i)
        texts[i] = monitors[i].firstName;
    return texts;
}

ReadinessTexts readinessReport(std::string_view statusReply)
{
    const std::int32_t byteB = hexToNumber(textAt(statusReply, 10, 2));
    const std::int32_t bytesCD = hexToNumber(textAt(statusReply, 13, 5));
    ReadinessTexts texts;
    for (std::size_t i = 0; i < monitorCount; ++i) {
        const Monitor& monitor = monitors[i];
        texts[i] = monitor.name;
        texts[i] += resultText(monitor, monitor.source == Source::byteB ? byteB : bytesCD);
    }
    return texts;
}

} // namespace zint
