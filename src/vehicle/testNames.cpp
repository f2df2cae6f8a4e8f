#include "vehicle/testNames.h"

#include "shared/module1.h"
#include "vehicle/parameterTable.h"

#include <algorithm>
#include <array>
#include <bit>

namespace zint {
namespace {

enum class Numbering { none, banksOfFourSensors, single };

struct MonitorRange {
    std::uint8_t first;
    std::uint8_t last;
    std::string_view name;
    Numbering numbering = Numbering::single;
    int firstNumber = 1;
    std::string_view behind = {}; ///< the number
};

constexpr auto monitorRanges = std::to_array<MonitorRange>({
    {0x01, 0x10, "O2 sensor", Numbering::banksOfFourSensors},
    {0x11, 0x12, "O2 sensor bank", Numbering::single, 1, " sensor 5"},
    {0x21, 0x24, "Catalyst bank"},
    {0x31, 0x34, "EGR bank"},
    {0x35, 0x38, "VVT bank"},
    {0x39, 0x39, "EVAP, cap off or 0.150 inch", Numbering::none},
    {0x3A, 0x3A, "EVAP 0.090 inch", Numbering::none},
    {0x3B, 0x3B, "EVAP 0.040 inch", Numbering::none},
    {0x3C, 0x3C, "EVAP 0.020 inch", Numbering::none},
    {0x3D, 0x3D, "EVAP purge flow", Numbering::none},
    {0x41, 0x50, "O2 sensor heater", Numbering::banksOfFourSensors},
    {0x51, 0x52, "O2 sensor heater bank", Numbering::single, 1, " sensor 5"},
    {0x61, 0x64, "Heated catalyst bank"},
    {0x71, 0x74, "Secondary air"},
    {0x81, 0x84, "Fuel system bank"},
    {0x85, 0x86, "Boost pressure control bank"},
    {0x90, 0x91, "NOx adsorber bank"},
    {0x98, 0x99, "NOx/SCR catalyst bank"},
    {0xA1, 0xA1, "Misfire, all cylinders", Numbering::none},
    {0xA2, 0xAF, "Misfire cylinder"},
    {0xB0, 0xB1, "Particulate filter bank"},
    {0xB2, 0xB3, "Particulate filter bank"},
});

constexpr MonitorRange lastCylinders = {0xB0, 0xB1, "Misfire cylinder", Numbering::single, 15};

std::string numbered(const MonitorRange& range, std::uint8_t mid)
{
    const int index = mid - range.first;
    if (range.numbering == Numbering::none)
        return std::string(range.name);
    if (range.numbering == Numbering::banksOfFourSensors)
        return std::string(range.name) + " bank " + std::to_string(index / 4 + 1) + " sensor " +
               std::to_string(index % 4 + 1);
    return std::string(range.name) + " " + std::to_string(range.firstNumber + index) +
           std::string(range.behind);
}

} // namespace

std::string monitorName(std::uint8_t mid, bool hasCylinders15And16)
{
    if (hasCylinders15And16 && mid >= lastCylinders.first && mid <= lastCylinders.last)
        return numbered(lastCylinders, mid);
    const auto* const range = std::ranges::find_if(monitorRanges, [mid](const MonitorRange& candidate) {
        return mid >= candidate.first && mid <= candidate.last;
    });
    return range == monitorRanges.end() ? "" : numbered(*range, mid);
}

std::string_view testName(std::uint8_t tid)
{
    static constexpr std::array<std::string_view, 13> names = {
        "",
        "Rich to lean threshold voltage",
        "Lean to rich threshold voltage",
        "Low voltage for switch time",
        "High voltage for switch time",
        "Rich to lean switch time",
        "Lean to rich switch time",
        "Lowest voltage in the test",
        "Highest voltage in the test",
        "Time between transitions",
        "Sensor period",
        "Misfires, average of the last 10 drive cycles",
        "Misfires in the last or this drive cycle",
    };
    return tid < names.size() ? names.at(tid) : std::string_view();
}

std::string sensorName(std::uint8_t location, bool hasFourBanks)
{
    if (!std::has_single_bit(location))
        return "O2 sensor " + hexText(location, 2);
    const auto bit = static_cast<std::size_t>(std::countr_zero(location));
    return "O2 sensor " + std::string(oxygenSensor(bit, hasFourBanks));
}

} // namespace zint
