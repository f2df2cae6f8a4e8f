#pragma once

#include "vehicle/parameters.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

/// What the rows of the parameters' table consist of. The rows stand in parameters<Group>.cpp, by parameter.
namespace zint {

/// The parameters of a row: one, or a run of the same layout (one an oxygen sensor).
struct ParameterRange {
    // A number is a range of its own, so that rows begin with it.
    constexpr ParameterRange(std::uint8_t only) : first(only) {}
    constexpr ParameterRange(std::uint8_t from, std::uint8_t number) : first(from), count(number) {}

    constexpr bool contains(std::uint8_t pid) const { return pid >= first && pid < first + count; }

    std::uint8_t first;
    std::uint8_t count = 1;
};

/// Where a field stands. The standard names the data bytes A to Z, then AA and so on: "A" is a byte, "AB"
/// two, "B-E" four, "A7" a bit, "B3-0" the lower four bits.
struct FieldPlace {
    constexpr FieldPlace(const char* text) : FieldPlace(std::string_view(text)) {}

    std::size_t first = 0; ///< of the data bytes
    std::size_t count = 1; ///< bytes, at most four, the highest first
    unsigned shift = 0;
    unsigned width = 8; ///< bits

    constexpr std::size_t end() const { return first + count; }

private:
    constexpr explicit FieldPlace(std::string_view text)
    {
        const std::size_t dash = text.find('-');
        if (text.size() > 1 && text[1] <= '9' && text[1] >= '0')
            setBits(text);
        else if (dash == std::string_view::npos)
            setBytes(text.substr(0, 1), text.substr(text.size() - 1));
        else
            setBytes(text.substr(0, dash), text.substr(dash + 1));
    }

    static constexpr std::size_t index(std::string_view byte)
    {
        return static_cast<std::size_t>(byte.back() - 'A') + (byte.size() - 1) * 26;
    }

    constexpr void setBytes(std::string_view from, std::string_view to)
    {
        first = index(from);
        count = index(to) + 1 - first;
        width = static_cast<unsigned>(count) * 8;
    }

    constexpr void setBits(std::string_view text)
    {
        first = index(text.substr(0, 1));
        shift = static_cast<unsigned>(text.back() - '0');
        width = static_cast<unsigned>(text[1] - '0') + 1 - shift;
    }
};

/// The full scale that 4F or 50 tells in one of its bytes; 0: the usual one.
struct FullScale {
    Bytes ParameterContext::*source;
    std::size_t index;
    double step; ///< of the byte
    double over; ///< the raw value that stands for the full scale
};

/// A number: raw * times / over + plus.
struct Formula {
    std::string_view unit = {};
    double times = 1;
    double over = 1;
    double plus = 0;
    bool isSigned = false;             ///< the raw value is in two's complement
    std::string_view whenAllOnes = {}; ///< what a raw value of ones alone says; empty: it is a number
    const FullScale* fullScale = nullptr;
};

struct Word {
    unsigned value; ///< of an enumeration; the number of a bit
    std::string_view text;
};

/// An enumeration: the raw value has one of the words.
struct OneOf {
    std::span<const Word> words;
};

/// Bits: the words of those that are set.
struct AnyOf {
    std::span<const Word> words;
};

/// A text that no table of words holds.
using TextOf = std::string (*)(std::uint32_t raw);

/// The parameters of a bitmap, such as "01 03 04".
std::string supportedText(std::uint8_t base, std::uint32_t bitmap);

template <std::uint8_t base>
std::string supportedParameters(std::uint32_t bitmap)
{
    return supportedText(base, bitmap);
}

using FieldMeaning = std::variant<Formula, OneOf, AnyOf, TextOf>;

/// A row: one field of a parameter. Numbers in designs and logs tell its place among the rows of the
/// parameter: new rows come behind those of the same parameter, and none goes.
struct Field {
    ParameterRange pids;
    std::string_view name;
    FieldPlace place;
    FieldMeaning meaning;
    int supportBit = -1; ///< of byte A: set where the vehicle has the field; -1: always
    int missingBit = -1; ///< of byte A: set while the field has no data; -1: it always has
    bool needsFourBanks = false;
};

/// A parameter of several fields, of none that stand here, or longer than its field.
struct ParameterGroup {
    ParameterRange pids;
    std::size_t length; ///< data bytes; the second bytes of vehicles with four banks come in addition
    std::string_view name;
};

/// Both sorted by parameter.
struct ParameterTable {
    std::span<const ParameterGroup> groups;
    std::span<const Field> fields;
};

ParameterTable basicParameters();          ///< 00 to 60
ParameterTable oxygenParameters();         ///< the oxygen sensors
ParameterTable engineParameters();         ///< 61 to 80
ParameterTable aftertreatmentParameters(); ///< from 81 on

/// "bank 1 sensor 2". @param location 0 to 7, the bits of 13 and 1D
std::string_view oxygenSensor(std::size_t location, bool hasFourBanks);

inline constexpr std::array offOn = {Word{0, "off"}, Word{1, "on"}};

inline constexpr Formula plainCount{};
inline constexpr Formula percent{.unit = "%", .times = 100, .over = 255};
inline constexpr Formula trimPercent{.unit = "%", .times = 100, .over = 128, .plus = -100};
inline constexpr Formula torquePercent{.unit = "%", .plus = -125};
inline constexpr Formula celsius{.unit = "°C", .plus = -40};
inline constexpr Formula fineCelsius{.unit = "°C", .over = 10, .plus = -40};
inline constexpr Formula inKilopascals{.unit = "kPa"};
inline constexpr Formula tenKilopascals{.unit = "kPa", .times = 10};
inline constexpr Formula finePressure{.unit = "kPa", .over = 32};
inline constexpr Formula inKilometres{.unit = "km"};
inline constexpr Formula inHours{.unit = "h"};
inline constexpr Formula inMinutes{.unit = "min"};
inline constexpr Formula inSeconds{.unit = "s"};

inline constexpr FullScale largestRatio{&ParameterContext::largestValues, 0, 1, 65535};
inline constexpr Formula equivalenceRatio{
    .unit = "ratio", .times = 2, .over = 65536, .fullScale = &largestRatio};

} // namespace zint
