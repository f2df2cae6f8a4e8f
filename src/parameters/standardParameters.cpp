#include "parameters/standardParameters.h"

#include "shared/module1.h"
#include "vehicle/vehicleRequest.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace zint {
namespace {

constexpr std::uint8_t liveValues = 0x01; // the service
constexpr std::size_t parameterCount = 256;

// How often, in loops of about a third of a second.
constexpr std::int32_t everyTime = 1;
constexpr std::int32_t everyOther = 2;
constexpr std::int32_t aboutFiveSeconds = 15;
constexpr std::int32_t aboutHalfAMinute = 90;
constexpr std::int32_t aboutFiveMinutes = 900;

enum class Group { engine, throttle, fuel, air, temperatures, oxygen, emissions, diesel, electric, status };

constexpr std::array<std::string_view, 10> groupNames = { // in their order
    "Engine and speed",    "Throttle and pedal",  "Fuel",      "Air",
    "Temperatures",        "Oxygen sensors",      "Emissions", "Diesel aftertreatment",
    "Hybrid and electric", "Status and distances"};

/// The parameters from one on up to the next row's.
struct Kind {
    std::uint8_t from;
    Group group;
    std::int32_t frequency; ///< of numbers that are no temperatures; for words no less than half a minute
};

constexpr std::array kinds = {
    Kind{0x00, Group::status, aboutFiveMinutes},
    Kind{0x01, Group::status, aboutHalfAMinute},
    Kind{0x03, Group::fuel, aboutHalfAMinute},
    Kind{0x04, Group::engine, everyTime},
    Kind{0x05, Group::temperatures, aboutFiveSeconds},
    Kind{0x06, Group::fuel, everyOther},
    Kind{0x0B, Group::air, everyOther},
    Kind{0x0C, Group::engine, everyTime},
    Kind{0x0F, Group::temperatures, aboutFiveSeconds},
    Kind{0x10, Group::air, everyTime},
    Kind{0x11, Group::throttle, everyTime},
    Kind{0x12, Group::emissions, aboutHalfAMinute},
    Kind{0x13, Group::oxygen, aboutFiveMinutes},
    Kind{0x14, Group::oxygen, everyOther},
    Kind{0x1C, Group::status, aboutFiveMinutes},
    Kind{0x1D, Group::oxygen, aboutFiveMinutes},
    Kind{0x1E, Group::status, aboutHalfAMinute},
    Kind{0x20, Group::status, aboutFiveMinutes},
    Kind{0x21, Group::status, aboutHalfAMinute},
    Kind{0x22, Group::fuel, everyOther},
    Kind{0x24, Group::oxygen, everyOther},
    Kind{0x2C, Group::emissions, everyOther},
    Kind{0x2F, Group::fuel, aboutHalfAMinute},
    Kind{0x30, Group::status, aboutHalfAMinute},
    Kind{0x32, Group::emissions, everyOther},
    Kind{0x33, Group::air, aboutHalfAMinute},
    Kind{0x34, Group::oxygen, everyOther},
    Kind{0x3C, Group::temperatures, aboutFiveSeconds},
    Kind{0x40, Group::status, aboutFiveMinutes},
    Kind{0x41, Group::status, aboutHalfAMinute},
    Kind{0x42, Group::electric, aboutFiveSeconds},
    Kind{0x43, Group::engine, everyTime},
    Kind{0x44, Group::fuel, everyOther},
    Kind{0x45, Group::throttle, everyTime},
    Kind{0x46, Group::temperatures, aboutFiveSeconds},
    Kind{0x47, Group::throttle, everyTime},
    Kind{0x4D, Group::status, aboutHalfAMinute},
    Kind{0x4F, Group::status, aboutFiveMinutes},
    Kind{0x51, Group::fuel, aboutFiveMinutes},
    Kind{0x52, Group::fuel, aboutHalfAMinute},
    Kind{0x53, Group::emissions, everyOther},
    Kind{0x55, Group::fuel, everyOther},
    Kind{0x5A, Group::throttle, everyTime},
    Kind{0x5B, Group::electric, aboutHalfAMinute},
    Kind{0x5C, Group::temperatures, aboutFiveSeconds},
    Kind{0x5D, Group::engine, everyTime},
    Kind{0x5E, Group::fuel, everyOther},
    Kind{0x5F, Group::emissions, aboutFiveMinutes},
    Kind{0x60, Group::status, aboutFiveMinutes},
    Kind{0x61, Group::engine, everyTime},
    Kind{0x63, Group::engine, aboutFiveMinutes},
    Kind{0x65, Group::status, aboutHalfAMinute},
    Kind{0x66, Group::air, everyTime},
    Kind{0x67, Group::temperatures, aboutFiveSeconds},
    Kind{0x69, Group::emissions, everyOther},
    Kind{0x6A, Group::air, everyOther},
    Kind{0x6B, Group::temperatures, aboutFiveSeconds},
    Kind{0x6C, Group::throttle, everyTime},
    Kind{0x6D, Group::fuel, everyOther},
    Kind{0x6F, Group::air, everyOther},
    Kind{0x75, Group::temperatures, aboutFiveSeconds},
    Kind{0x7A, Group::diesel, everyOther},
    Kind{0x7D, Group::emissions, aboutHalfAMinute},
    Kind{0x7F, Group::status, aboutHalfAMinute},
    Kind{0x80, Group::status, aboutFiveMinutes},
    Kind{0x81, Group::emissions, aboutHalfAMinute},
    Kind{0x83, Group::diesel, everyOther},
    Kind{0x84, Group::temperatures, aboutFiveSeconds},
    Kind{0x85, Group::diesel, aboutHalfAMinute},
    Kind{0x86, Group::diesel, everyOther},
    Kind{0x87, Group::air, everyOther},
    Kind{0x88, Group::diesel, aboutHalfAMinute},
    Kind{0x89, Group::emissions, aboutHalfAMinute},
    Kind{0x8B, Group::diesel, aboutHalfAMinute},
    Kind{0x8C, Group::oxygen, everyOther},
    Kind{0x8D, Group::throttle, everyTime},
    Kind{0x8E, Group::engine, everyOther},
    Kind{0x8F, Group::diesel, everyOther},
    Kind{0x90, Group::status, aboutHalfAMinute},
    Kind{0x92, Group::fuel, aboutHalfAMinute},
    Kind{0x93, Group::status, aboutHalfAMinute},
    Kind{0x94, Group::diesel, aboutHalfAMinute},
    Kind{0x98, Group::temperatures, aboutFiveSeconds},
    Kind{0x9A, Group::electric, everyOther},
    Kind{0x9B, Group::diesel, aboutHalfAMinute},
    Kind{0x9C, Group::oxygen, everyOther},
    Kind{0x9D, Group::fuel, everyOther},
    Kind{0x9E, Group::air, everyOther},
    Kind{0x9F, Group::fuel, aboutHalfAMinute},
    Kind{0xA0, Group::status, aboutFiveMinutes},
    Kind{0xA1, Group::diesel, everyOther},
    Kind{0xA2, Group::fuel, everyOther},
    Kind{0xA3, Group::emissions, everyOther},
    Kind{0xA4, Group::engine, everyOther},
    Kind{0xA5, Group::diesel, aboutHalfAMinute},
    Kind{0xA6, Group::status, aboutHalfAMinute},
    Kind{0xC0, Group::status, aboutFiveMinutes},
};

static_assert(std::ranges::is_sorted(kinds, {}, &Kind::from));

const Kind& kindOf(std::uint8_t pid)
{
    return *std::prev(std::ranges::upper_bound(kinds, pid, {}, &Kind::from));
}

std::int32_t frequencyOf(const Kind& kind, const FieldTraits& field)
{
    if (field.unit == "°C")
        return aboutFiveSeconds;
    return field.hasWords ? std::max(kind.frequency, aboutHalfAMinute) : kind.frequency;
}

std::vector<StandardParameter> allParameters()
{
    std::vector<StandardParameter> all;
    for (std::size_t i = 0; i < parameterCount; ++i) {
        const auto pid = static_cast<std::uint8_t>(i);
        const Kind& kind = kindOf(pid);
        for (std::uint8_t place = 0; const FieldTraits* field = parameterField(pid, place); ++place)
            all.push_back({.pid = pid,
                           .place = place,
                           .code = "01" + hexText(pid, 2),
                           .field = *field,
                           .group = groupNames.at(static_cast<std::size_t>(kind.group)),
                           .frequency = frequencyOf(kind, *field)});
    }
    return all;
}

bool contains(std::string_view text, const std::string& capitals)
{
    return upperCase(text).find(capitals) != std::string::npos;
}

bool isWordFound(const SearchedTexts& texts, const std::string& word)
{
    constexpr std::size_t serviceDigits = 2;
    const std::string code = upperCase(texts.code);
    return code.starts_with(word) ||
           (code.size() > serviceDigits && std::string_view(code).substr(serviceDigits).starts_with(word)) ||
           contains(texts.name, word) || contains(texts.unit, word) || contains(texts.group, word);
}

} // namespace

std::span<const std::string_view> parameterGroups() { return groupNames; }

std::int32_t frequencyForUnit(std::string_view unit)
{
    constexpr std::array<std::string_view, 6> ofTemperature = {"°C", "°F", "C", "F", "degC", "degF"};
    const bool isTemperature = std::ranges::find(ofTemperature, unit) != ofTemperature.end();
    return isTemperature ? aboutFiveSeconds : everyOther;
}

const std::vector<StandardParameter>& standardParameters()
{
    static const std::vector<StandardParameter> all = allParameters();
    return all;
}

DesignEntry eventFor(const StandardParameter& parameter, UnitSystem units)
{
    return {.code = parameter.code,
            .description = parameter.field.name,
            .conversion = numberOf(parameter.conversion(units)),
            .frequency = parameter.frequency};
}

std::optional<std::uint8_t> requestedParameter(std::string_view code)
{
    const VehicleRequest request(upperCase(code));
    const Bytes& bytes = request.bytes();
    if (bytes.size() != 2 || bytes[0] != liveValues)
        return std::nullopt;
    return bytes[1];
}

bool isFound(const SearchedTexts& texts, std::string_view words)
{
    constexpr std::string_view blanks = " \t,";
    while (true) {
        words.remove_prefix(std::min(words.find_first_not_of(blanks), words.size()));
        if (words.empty())
            return true;
        const std::string_view word = words.substr(0, words.find_first_of(blanks));
        if (!isWordFound(texts, upperCase(word)))
            return false;
        words.remove_prefix(word.size());
    }
}

bool isFound(const StandardParameter& parameter, std::string_view words, UnitSystem units)
{
    return isFound({parameter.code, parameter.field.name, parameter.unit(units), parameter.group}, words);
}

} // namespace zint
