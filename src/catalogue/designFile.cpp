#include "catalogue/designFile.h"

#include "shared/module1.h"
#include "shared/runTimeError.h"
#include "shared/textFile.h"

#include <limits>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace zint {
namespace {

constexpr char separator = '|';
constexpr std::string_view endLine = "EOP - end of Parms";
constexpr std::int32_t automaticSpeed = -1;
constexpr std::size_t mostFields = 7;
constexpr std::size_t fewestFields = 5;

/// The fields of a line; the seventh holds all that is left.
std::vector<std::string_view> split(std::string_view line)
{
    std::vector<std::string_view> fields;
    while (fields.size() + 1 < mostFields) {
        const auto end = line.find(separator);
        if (end == std::string_view::npos)
            break;
        fields.push_back(line.substr(0, end));
        line.remove_prefix(end + 1);
    }
    fields.push_back(line);
    return fields;
}

/// The next line, if it can be written again: the numbers that a file may leave out make it longer.
std::optional<std::string> nextLine(LineReader& lines)
{
    constexpr std::size_t longest = LineReader::longestLine / 2;
    auto line = lines.next();
    if (line && line->size() > longest)
        throw FileError("a line is longer than " + std::to_string(longest) + " characters");
    return line;
}

std::string lineOf(LineReader& lines)
{
    auto line = nextLine(lines);
    if (!line)
        throw FileError("the file ends before its settings line");
    return *line;
}

/// @throws RunTimeError 6 for what is no 16-bit number
SampleSpeed toSpeed(std::string_view text)
{
    constexpr std::int32_t fastest = 4; // ms, as on the designer's slider
    constexpr std::int32_t slowest = 1020;
    const std::int32_t speed = toInteger(text);
    if (speed < std::numeric_limits<std::int16_t>::min() || speed > std::numeric_limits<std::int16_t>::max())
        throw RunTimeError::overflow();
    if (speed == automaticSpeed)
        return std::nullopt;
    return speed >= fastest && speed <= slowest ? std::chrono::milliseconds(speed) : Design::defaultSpeed;
}

void readSettings(std::string_view line, Design& design)
{
    const auto end = line.find(separator);
    design.extraCommands = line.substr(0, end);
    if (end != std::string_view::npos)
        design.sampleSpeed = toSpeed(line.substr(end + 1));
}

/// What the line of an event holds.
struct EventLine {
    DesignEntry event;
    Design::Place place;
};

EventLine toEvent(const std::vector<std::string_view>& fields)
{
    EventLine line{.event = {.code = std::string(fields[0]),
                             .description = std::string(fields[1]),
                             .conversion = toInteger(fields[2]),
                             .frequency = toInteger(fields[3]),
                             .offset = toInteger(fields[4])}};
    if (fields.size() == mostFields)
        line.place = {.reserved1 = toInteger(fields[5]), .reserved2 = toInteger(fields[6])};
    return line;
}

/// @throws FileError for an event too many
void add(EventLine line, Design& design, std::size_t mostEvents)
{
    const std::size_t n = design.events.size();
    if (n == mostEvents)
        throw FileError("the file holds more than " + std::to_string(mostEvents) + " events");
    if (n < design.places.size())
        design.places.at(n) = line.place;
    design.events.push_back(std::move(line.event));
}

std::string settingsText(const Design& design)
{
    const auto speed = design.sampleSpeed ? design.sampleSpeed->count() : automaticSpeed;
    return design.extraCommands + separator + std::to_string(speed);
}

std::string eventText(const DesignEntry& event)
{
    std::string text = event.code + separator + event.description;
    for (const std::int32_t number : {event.conversion, event.frequency, event.offset})
        (text += separator) += std::to_string(number);
    return text;
}

std::string placeText(const Design::Place& place)
{
    return separator + std::to_string(place.reserved1) + separator + std::to_string(place.reserved2);
}

} // namespace

NotStorable::NotStorable()
    : std::runtime_error("This text can't hold a \"|\": design files use it to separate their fields.")
{
}

void requireStorable(std::string_view text)
{
    if (text.find(separator) != std::string_view::npos)
        throw NotStorable();
}

void writeDesign(std::ostream& stream, const Design& design, EventFields fields)
{
    stream << design.title << lineEnd << settingsText(design) << lineEnd;
    for (std::size_t n = 0; n < design.events.size(); ++n) {
        stream << eventText(design.events[n]);
        if (fields == EventFields::all)
            stream << placeText(n < design.places.size() ? design.places.at(n) : Design::Place());
        stream << lineEnd;
    }
    stream << endLine << lineEnd;
}

Design readDesign(std::istream& stream, std::size_t mostEvents)
{
    LineReader lines(stream);
    Design design{.title = lineOf(lines)};
    readSettings(lineOf(lines), design);
    while (const auto line = nextLine(lines)) {
        if (line->starts_with(endLine))
            break;
        const auto fields = split(*line);
        if (fields.size() >= fewestFields)
            add(toEvent(fields), design, mostEvents);
    }
    return design;
}

Design readLoggedDesign(LineReader& lines)
{
    Design design{.title = lineOf(lines)};
    const std::string settings = lineOf(lines);
    readSettings(settings, design);
    if (settings != settingsText(design))
        throw FileError("these are no settings of a data log's design");
    for (;;) {
        const auto line = nextLine(lines);
        if (!line)
            throw FileError("the file ends before its design does");
        if (*line == endLine)
            return design;
        const auto fields = split(*line);
        EventLine read = fields.size() >= fewestFields ? toEvent(fields) : EventLine();
        if (*line != eventText(read.event))
            throw FileError("this is no event of a data log's design");
        add({.event = std::move(read.event)}, design, Design::maxEvents);
    }
}

Design loadDesign(const std::string& path, std::size_t mostEvents)
{
    Design design;
    readFile(path, [&](std::istream& stream) { design = readDesign(stream, mostEvents); });
    return design;
}

void saveDesign(const std::string& path, const Design& design)
{
    replaceFile(path, [&design](std::ostream& stream) { writeDesign(stream, design); });
}

} // namespace zint
