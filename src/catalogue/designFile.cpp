#include "catalogue/designFile.h"

#include "shared/module1.h"
#include "shared/runTimeError.h"
#include "shared/textFile.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace zint {
namespace {

constexpr char separator = '|';
constexpr std::string_view endLine = "EOP - end of Parms";
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

std::int16_t toSpeed(std::string_view text)
{
    const std::int32_t speed = toInteger(text);
    if (speed < std::numeric_limits<std::int16_t>::min() || speed > std::numeric_limits<std::int16_t>::max())
        throw RunTimeError::overflow();
    const bool offered = speed >= fastestSampling && speed <= slowestSampling;
    return speed == Design::automaticSpeed || offered ? static_cast<std::int16_t>(speed)
                                                      : Design::defaultSpeed;
}

void readSettings(std::string_view line, Design& design)
{
    const auto end = line.find(separator);
    design.extraCommands = line.substr(0, end);
    if (end != std::string_view::npos)
        design.sampleSpeed = toSpeed(line.substr(end + 1));
}

DesignEntry toEvent(const std::vector<std::string_view>& fields)
{
    DesignEntry event{.code = std::string(fields[0]),
                      .description = std::string(fields[1]),
                      .conversion = toInteger(fields[2]),
                      .frequency = toInteger(fields[3]),
                      .offset = toInteger(fields[4])};
    if (fields.size() == mostFields) {
        event.reserved1 = toInteger(fields[5]);
        event.reserved2 = toInteger(fields[6]);
    }
    return event;
}

/// A design as text has it: events without end.
struct Block {
    Design design; ///< all but its events
    std::vector<DesignEntry> events;
};

/// @throws FileError for an event too many
void add(DesignEntry event, std::vector<DesignEntry>& events, std::size_t most)
{
    if (events.size() == most)
        throw FileError("the file holds more than " + std::to_string(most) + " events");
    events.push_back(std::move(event));
}

Block readBlock(std::istream& stream, std::size_t mostEvents)
{
    LineReader lines(stream);
    Block block;
    block.design.title() = lineOf(lines);
    readSettings(lineOf(lines), block.design);
    while (const auto line = nextLine(lines)) {
        if (line->starts_with(endLine))
            break;
        const auto fields = split(*line);
        if (fields.size() >= fewestFields)
            add(toEvent(fields), block.events, mostEvents);
    }
    return block;
}

/// The design of a block, with as many of its events as it has room for.
Design designOf(const Block& block)
{
    Design design = block.design;
    const std::size_t count = std::min<std::size_t>(block.events.size(), Design::maxEvents);
    std::ranges::copy_n(block.events.begin(), static_cast<std::ptrdiff_t>(count), design.entries.begin() + 1);
    design.eventCount() = static_cast<std::int32_t>(count);
    design.polledCount() = static_cast<std::int32_t>(
        std::ranges::count_if(design.events(), [](const DesignEntry& event) { return event.frequency > 0; }));
    return design;
}

std::string settingsText(const Design& design)
{
    return design.extraCommands + separator + std::to_string(design.sampleSpeed);
}

std::string eventText(const DesignEntry& event, EventFields fields)
{
    std::string text = event.code + separator + event.description;
    const auto append = [&text](std::int32_t number) { (text += separator) += std::to_string(number); };
    append(event.conversion);
    append(event.frequency);
    append(event.offset);
    if (fields == EventFields::all) {
        append(event.reserved1);
        append(event.reserved2);
    }
    return text;
}

void writeBlock(std::ostream& stream, const Design& design, std::span<const DesignEntry> more,
                EventFields fields)
{
    stream << design.title() << lineEnd << settingsText(design) << lineEnd;
    for (const auto events : {design.events(), more}) {
        for (const DesignEntry& event : events)
            stream << eventText(event, fields) << lineEnd;
    }
    stream << endLine << lineEnd;
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
    writeBlock(stream, design, {}, fields);
}

void writeDesign(std::ostream& stream, const Design& design, std::span<const DesignEntry> more)
{
    writeBlock(stream, design, more, EventFields::all);
}

Design readDesign(std::istream& stream) { return designOf(readBlock(stream, Design::maxEvents)); }

Design readLoggedDesign(LineReader& lines)
{
    Block block;
    block.design.title() = lineOf(lines);
    const std::string settings = lineOf(lines);
    readSettings(settings, block.design);
    if (settings != settingsText(block.design))
        throw FileError("these are no settings of a data log's design");
    for (;;) {
        const auto line = nextLine(lines);
        if (!line)
            throw FileError("the file ends before its design does");
        if (*line == endLine)
            return designOf(block);
        DesignEntry event;
        if (const auto fields = split(*line); fields.size() >= fewestFields)
            event = toEvent(fields);
        if (*line != eventText(event, EventFields::withoutReserved))
            throw FileError("this is no event of a data log's design");
        add(event, block.events, Design::maxEvents);
    }
}

Design readDesign(std::istream& stream, std::vector<DesignEntry>& more)
{
    const Block block = readBlock(stream, std::numeric_limits<std::size_t>::max());
    const std::size_t room = std::min<std::size_t>(block.events.size(), Design::maxEvents);
    more.assign(block.events.begin() + static_cast<std::ptrdiff_t>(room), block.events.end());
    return designOf(block);
}

Design loadDesign(const std::string& path)
{
    Design design;
    readFile(path, [&design](std::istream& stream) { design = readDesign(stream); });
    return design;
}

void saveDesign(const std::string& path, const Design& design)
{
    replaceFile(path, [&design](std::ostream& stream) { writeDesign(stream, design); });
}

} // namespace zint
