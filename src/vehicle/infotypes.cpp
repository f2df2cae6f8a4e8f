#include "vehicle/infotypes.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zint {

const Infotype* infotypeOf(std::uint8_t id)
{
    static constexpr auto infotypes = std::to_array<Infotype>({
        {0x01, "Messages of the VIN", InfoForm::messageCount, 0, 0},
        {0x02, "VIN", InfoForm::vin, 0, 5},
        {0x03, "Messages of the calibration ids", InfoForm::messageCount, 0, 0},
        {0x04, "Calibration ids", InfoForm::calibrationIds, 16, 4},
        {0x05, "Messages of the CVNs", InfoForm::messageCount, 0, 0},
        {0x06, "Calibration verification numbers", InfoForm::cvns, 4, 1},
        {0x07, "Messages of the in-use counters", InfoForm::messageCount, 0, 0},
        {0x08, "In-use counters", InfoForm::sparkCounters, 2, 0},
        {0x09, "Messages of the ECU name", InfoForm::messageCount, 0, 0},
        {0x0A, "ECU name", InfoForm::ecuName, 0, 5},
        {0x0B, "In-use counters", InfoForm::compressionCounters, 2, 0},
        {0x0D, "Engine serial number", InfoForm::text, 0, 0},
        {0x0F, "Exhaust type approval number", InfoForm::text, 0, 0},
        {0x11, "Engine family or test group", InfoForm::text, 0, 0},
        {0x12, "Ignition cycles with fuelled engine", InfoForm::number, 0, 0},
        {0x14, "EVAP distance", InfoForm::number, 0, 0},
    });
    const auto* const found = std::ranges::find(infotypes, id, &Infotype::id);
    return found != infotypes.end() ? found : nullptr;
}

std::string counterText(const std::string& counter)
{
    static constexpr auto words = std::to_array<std::pair<std::string_view, std::string_view>>({
        {"CAT", "Catalyst"},
        {"O2S", "Oxygen sensor"},
        {"EGR", "EGR / VVT"},
        {"AIR", "Secondary air"},
        {"EVAP", "Evaporative system"},
        {"SO2S", "Secondary oxygen sensor"},
        {"HCCAT", "NMHC catalyst"},
        {"NCAT", "NOx catalyst"},
        {"NADS", "NOx adsorber"},
        {"PM", "Particulate filter"},
        {"EGS", "Exhaust gas sensor"},
        {"BP", "Boost pressure"},
        {"FUEL", "Fuel system"},
        {"OBD", "All monitors"},
    });
    const auto* const found =
        std::ranges::find(words, std::string_view(counter).substr(0, counter.find("CO")),
                          &std::pair<std::string_view, std::string_view>::first);
    if (found == words.end())
        return counter == "IGNCNTR" ? "Ignition cycles" : counter;
    const char bank = counter.back();
    return std::string(found->second) + (bank == '1' || bank == '2' ? std::string(", bank ") + bank : "");
}

} // namespace zint
