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

constexpr std::string_view engine = "Engine and speed";
constexpr std::string_view throttle = "Throttle and pedal";
constexpr std::string_view fuel = "Fuel";
constexpr std::string_view air = "Air";
constexpr std::string_view temperatures = "Temperatures";
constexpr std::string_view oxygen = "Oxygen sensors";
constexpr std::string_view emissions = "Emissions";
constexpr std::string_view diesel = "Diesel aftertreatment";
constexpr std::string_view electric = "Hybrid and electric";
constexpr std::string_view status = "Status and distances";
constexpr std::array groups = {engine, throttle,  fuel,   air,      temperatures,
                               oxygen, emissions, diesel, electric, status};

/// The parameters from one on up to the next row's.
struct Kind {
    std::uint8_t from;
    std::string_view group;
    std::int32_t frequency; ///< of numbers that are no temperatures; for words no less than half a minute
};

constexpr std::array kinds = {
    Kind{0x00, status, aboutFiveMinutes},
    Kind{0x01, status, aboutHalfAMinute},
    Kind{0x03, fuel, aboutHalfAMinute},
    Kind{0x04, engine, everyTime},
    Kind{0x05, temperatures, aboutFiveSeconds},
    Kind{0x06, fuel, everyOther},
    Kind{0x0B, air, everyOther},
    Kind{0x0C, engine, everyTime},
    Kind{0x0F, temperatures, aboutFiveSeconds},
    Kind{0x10, air, everyTime},
    Kind{0x11, throttle, everyTime},
    Kind{0x12, emissions, aboutHalfAMinute},
    Kind{0x13, oxygen, aboutFiveMinutes},
    Kind{0x14, oxygen, everyOther},
    Kind{0x1C, status, aboutFiveMinutes},
    Kind{0x1D, oxygen, aboutFiveMinutes},
    Kind{0x1E, status, aboutHalfAMinute},
    Kind{0x20, status, aboutFiveMinutes},
    Kind{0x21, status, aboutHalfAMinute},
    Kind{0x22, fuel, everyOther},
    Kind{0x24, oxygen, everyOther},
    Kind{0x2C, emissions, everyOther},
    Kind{0x2F, fuel, aboutHalfAMinute},
    Kind{0x30, status, aboutHalfAMinute},
    Kind{0x32, emissions, everyOther},
    Kind{0x33, air, aboutHalfAMinute},
    Kind{0x34, oxygen, everyOther},
    Kind{0x3C, temperatures, aboutFiveSeconds},
    Kind{0x40, status, aboutFiveMinutes},
    Kind{0x41, status, aboutHalfAMinute},
    Kind{0x42, electric, aboutFiveSeconds},
    Kind{0x43, engine, everyTime},
    Kind{0x44, fuel, everyOther},
    Kind{0x45, throttle, everyTime},
    Kind{0x46, temperatures, aboutFiveSeconds},
    Kind{0x47, throttle, everyTime},
    Kind{0x4D, status, aboutHalfAMinute},
    Kind{0x4F, status, aboutFiveMinutes},
    Kind{0x51, fuel, aboutFiveMinutes},
    Kind{0x52, fuel, aboutHalfAMinute},
    Kind{0x53, emissions, everyOther},
    Kind{0x55, fuel, everyOther},
    Kind{0x5A, throttle, everyTime},
    Kind{0x5B, electric, aboutHalfAMinute},
    Kind{0x5C, temperatures, aboutFiveSeconds},
    Kind{0x5D, engine, everyTime},
    Kind{0x5E, fuel, everyOther},
    Kind{0x5F, emissions, aboutFiveMinutes},
    Kind{0x60, status, aboutFiveMinutes},
    Kind{0x61, engine, everyTime},
    Kind{0x63, engine, aboutFiveMinutes},
    Kind{0x65, status, aboutHalfAMinute},
    Kind{0x66, air, everyTime},
    Kind{0x67, temperatures, aboutFiveSeconds},
    Kind{0x69, emissions, everyOther},
    Kind{0x6A, air, everyOther},
    Kind{0x6B, temperatures, aboutFiveSeconds},
    Kind{0x6C, throttle, everyTime},
    Kind{0x6D, fuel, everyOther},
    Kind{0x6F, air, everyOther},
    Kind{0x75, temperatures, aboutFiveSeconds},
    Kind{0x7A, diesel, everyOther},
    Kind{0x7D, emissions, aboutHalfAMinute},
    Kind{0x7F, status, aboutHalfAMinute},
    Kind{0x80, status, aboutFiveMinutes},
    Kind{0x81, emissions, aboutHalfAMinute},
    Kind{0x83, diesel, everyOther},
    Kind{0x84, temperatures, aboutFiveSeconds},
    Kind{0x85, diesel, aboutHalfAMinute},
    Kind{0x86, diesel, everyOther},
    Kind{0x87, air, everyOther},
    Kind{0x88, diesel, aboutHalfAMinute},
    Kind{0x89, emissions, aboutHalfAMinute},
    Kind{0x8B, diesel, aboutHalfAMinute},
    Kind{0x8C, oxygen, everyOther},
    Kind{0x8D, throttle, everyTime},
    Kind{0x8E, engine, everyOther},
    Kind{0x8F, diesel, everyOther},
    Kind{0x90, status, aboutHalfAMinute},
    Kind{0x92, fuel, aboutHalfAMinute},
    Kind{0x93, status, aboutHalfAMinute},
    Kind{0x94, diesel, aboutHalfAMinute},
    Kind{0x98, temperatures, aboutFiveSeconds},
    Kind{0x9A, electric, everyOther},
    Kind{0x9B, diesel, aboutHalfAMinute},
    Kind{0x9C, oxygen, everyOther},
    Kind{0x9D, fuel, everyOther},
    Kind{0x9E, air, everyOther},
    Kind{0x9F, fuel, aboutHalfAMinute},
    Kind{0xA0, status, aboutFiveMinutes},
    Kind{0xA1, diesel, everyOther},
    Kind{0xA2, fuel, everyOther},
    Kind{0xA3, emissions, everyOther},
    Kind{0xA4, engine, everyOther},
    Kind{0xA5, diesel, aboutHalfAMinute},
    Kind{0xA6, status, aboutHalfAMinute},
    Kind{0xC0, status, aboutFiveMinutes},
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
        for (std::uint8_t place = 0; auto field = parameterField(pid, place); ++place)
            all.push_back({.pid = pid,
                           .place = place,
                           .code = "01" + hexText(pid, 2),
                           .field = *field,
                           .group = kind.group,
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

std::span<const std::string_view> parameterGroups() { return groups; }

std::int32_t frequencyForUnit(std::string_view unit)
{
    return unit == "°C" || unit == "°F" ? aboutFiveSeconds : everyOther;
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
