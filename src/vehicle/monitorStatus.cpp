#include "vehicle/monitorStatus.h"

#include <array>
#include <utility>

namespace zint {
namespace {

struct MonitorBit {
    const char* name;
    int bit;
};

/// Supported in byte B, not complete four bits higher.
constexpr std::array<MonitorBit, 3> continuousMonitors = {
    {{"misfire", 0}, {"fuelSystem", 1}, {"components", 2}}};

/// Supported in byte C, not complete in byte D.
constexpr std::array<MonitorBit, 8> sparkMonitors = {{{"catalyst", 0},
                                                      {"heatedCatalyst", 1},
                                                      {"evap", 2},
                                                      {"secondaryAir", 3},
                                                      {"acRefrigerant", 4},
                                                      {"o2Sensor", 5},
                                                      {"o2Heater", 6},
                                                      {"egr", 7}}};

constexpr std::array<MonitorBit, 6> compressionMonitors = {{{"nmhcCatalyst", 0},
                                                            {"noxScr", 1},
                                                            {"boostPressure", 3},
                                                            {"exhaustGasSensor", 5},
                                                            {"pmFilter", 6},
                                                            {"egrVvt", 7}}};

template <typename Monitors>
void addMonitors(Readiness& readiness, const Monitors& monitors, unsigned supported, unsigned incomplete)
{
    const auto has = [](unsigned bits, int bit) { return (bits >> static_cast<unsigned>(bit) & 1U) != 0; };
    for (const MonitorBit& monitor : monitors) {
        const MonitorState result =
            has(incomplete, monitor.bit) ? MonitorState::incomplete : MonitorState::complete;
        readiness.monitors.emplace_back(monitor.name,
                                        has(supported, monitor.bit) ? result : MonitorState::unsupported);
    }
}

} // namespace

Readiness readinessIn(BytesView status)
{
    constexpr unsigned compressionBit = 0x08;
    Readiness readiness{.isCompressionIgnition = (status[1] & compressionBit) != 0};
    addMonitors(readiness, continuousMonitors, status[1], status[1] >> 4U);
    if (readiness.isCompressionIgnition)
        addMonitors(readiness, compressionMonitors, status[2], status[3]);
    else
        addMonitors(readiness, sparkMonitors, status[2], status[3]);
    return readiness;
}

std::string monitorText(const std::string& name)
{
    static constexpr std::array words = {
        std::pair("misfire", "Misfire"),
        std::pair("fuelSystem", "Fuel system"),
        std::pair("components", "Components"),
        std::pair("catalyst", "Catalyst"),
        std::pair("heatedCatalyst", "Heated catalyst"),
        std::pair("evap", "Evaporative system"),
        std::pair("secondaryAir", "Secondary air"),
        std::pair("acRefrigerant", "A/C refrigerant"),
        std::pair("o2Sensor", "Oxygen sensor"),
        std::pair("o2Heater", "Oxygen sensor heater"),
        std::pair("egr", "EGR / VVT"),
        std::pair("nmhcCatalyst", "NMHC catalyst"),
        std::pair("noxScr", "NOx / SCR aftertreatment"),
        std::pair("boostPressure", "Boost pressure"),
        std::pair("exhaustGasSensor", "Exhaust gas sensor"),
        std::pair("pmFilter", "Particulate filter"),
        std::pair("egrVvt", "EGR / VVT"),
    };
    for (const auto& [known, text] : words) {
        if (name == known)
            return text;
    }
    return name;
}

} // namespace zint
