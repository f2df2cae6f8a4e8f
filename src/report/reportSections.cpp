#include "report/reportSections.h"

#include "dtcdb/dtcText.h"
#include "report/reportHeadline.h"
#include "report/requestOutcomes.h"
#include "shared/module1.h"
#include "vehicle/infotypes.h"
#include "vehicle/monitorStatus.h"
#include "vehicle/vin.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <utility>

namespace zint {
namespace {

std::string descriptionOf(const std::string& code, CodeDescriptions* descriptions)
{
    if (isMakersCode(code))
        return "manufacturer specific";
    const auto found = descriptions == nullptr ? std::nullopt : descriptions->describe(code);
    return found.value_or("");
}

/// A section's mark from those of its cells: the worst one, and ok where no cell has one.
Mark worstOf(const std::vector<ReportTable>& tables)
{
    Mark worst = Mark::ok;
    for (const ReportTable& table : tables) {
        for (const auto& row : table.rows) {
            for (const ReportCell& cell : row) {
                if (cell.mark == Mark::attention || cell.mark == Mark::failed)
                    worst = std::max(worst, cell.mark);
            }
        }
    }
    return worst;
}

/// A section with a table for each control unit that has told something of it.
ReportSection unitSection(const char* title, const VehicleFacts& facts,
                          const std::function<ReportTable(const UnitReading&)>& tableOf)
{
    ReportSection section{.title = title};
    for (const auto& [name, unit] : facts.units) {
        ReportTable table = tableOf(unit);
        if (table.rows.empty())
            continue;
        table.title = unitText(name, unit) + (table.title.empty() ? "" : ", " + table.title);
        section.tables.push_back(std::move(table));
    }
    section.mark = section.tables.empty() ? Mark::notSupported : worstOf(section.tables);
    return section;
}

std::string valueText(const ParameterValue& value)
{
    if (!value.number)
        return value.text;
    const std::string number = numberText(*value.number);
    return value.unit.empty() ? number : number + " " + value.unit;
}

/// What tells most of the moment in which a code was stored: engine speed, speed, temperature, load.
std::string frameText(const FreezeFrame& frame)
{
    std::string text;
    for (const std::uint8_t pid : std::to_array<std::uint8_t>({0x0C, 0x0D, 0x05, 0x04})) {
        const auto value = frame.values.find(pid);
        if (value != frame.values.end() && !value->second.empty())
            text += (text.empty() ? "" : ", ") + valueText(value->second.front());
    }
    return text.empty() ? "stored" : text;
}

/// The light of each control unit, and how many codes it says to have.
ReportTable lightTable(const VehicleFacts& facts)
{
    ReportTable table{.title = "Check Engine light", .columns = {"Control unit", "Light", "Codes counted"}};
    for (const auto& [name, unit] : facts.units) {
        if (!unit.mil)
            continue;
        table.rows.push_back({{unitText(name, unit)},
                              *unit.mil ? ReportCell{"on", Mark::attention} : ReportCell{"off", Mark::ok},
                              {unit.dtcCount ? std::to_string(*unit.dtcCount) : ""}});
    }
    return table;
}

/// The codes of a control unit, each with its kinds: "stored, permanent".
std::vector<std::pair<std::string, std::string>> codesWithKinds(const UnitReading& unit)
{
    std::vector<std::pair<std::string, std::string>> all;
    for (const auto& [kind, codes] : unit.codes) {
        const std::string word = codeKindNames.at(static_cast<std::size_t>(kind));
        for (const std::string& code : codes) {
            const auto known = std::ranges::find(all, code, &std::pair<std::string, std::string>::first);
            if (known == all.end())
                all.emplace_back(code, word);
            else if (!known->second.ends_with(word)) // some units tell a code twice
                known->second += ", " + word;
        }
    }
    return all;
}

ReportSection codesSection(const VehicleFacts& facts, CodeDescriptions* descriptions)
{
    ReportSection section{.title = "Trouble codes"};
    ReportTable table{.columns = {"Code", "Kind", "Control unit", "Description", "Freeze frame"}};
    bool isTold = false;
    for (const auto& [name, unit] : facts.units) {
        isTold = isTold || !unit.codes.empty();
        for (const auto& [code, kinds] : codesWithKinds(unit)) {
            const bool hasFrame = unit.freezeFrame && unit.freezeFrame->code == code;
            table.rows.push_back({{code, Mark::attention},
                                  {kinds},
                                  {unitText(name, unit)},
                                  {descriptionOf(code, descriptions)},
                                  {hasFrame ? frameText(*unit.freezeFrame) : ""}});
        }
    }
    if (table.rows.empty())
        section.note = isTold ? "No codes reported." : "No control unit has told of codes.";
    else
        section.tables.push_back(std::move(table));
    if (ReportTable lights = lightTable(facts); !lights.rows.empty())
        section.tables.push_back(std::move(lights));
    section.mark = isTold ? worstOf(section.tables) : Mark::failed;
    return section;
}

ReportCell stateCell(MonitorState state)
{
    static constexpr std::array marks = {Mark::notSupported, Mark::attention, Mark::ok};
    return {stateText(state), marks.at(static_cast<std::size_t>(state))};
}

ReportSection readinessSection(const VehicleFacts& facts)
{
    ReportSection section = unitSection("Readiness", facts, [](const UnitReading& unit) {
        ReportTable table{.columns = {"Monitor", "Since clearing", "This drive cycle"}};
        if (!unit.readiness)
            return table;
        table.title = unit.readiness->isCompressionIgnition ? "compression ignition" : "";
        for (const auto& [monitor, state] : unit.readiness->monitors)
            table.rows.push_back(
                {{monitorText(monitor)},
                 stateCell(state),
                 unit.cycleReadiness
                     ? stateCell(unit.cycleReadiness->stateOf(monitor).value_or(MonitorState::unsupported))
                     : ReportCell()});
        return table;
    });
    if (section.tables.empty())
        section.note = "No control unit has told of its monitors.";
    section.mark = section.tables.empty()                ? Mark::failed
                   : monitorCounts(facts).incomplete > 0 ? Mark::attention
                                                         : Mark::ok;
    return section;
}

ReportTable valueTable(const std::map<std::uint8_t, std::vector<ParameterValue>>& values)
{
    ReportTable table{.columns = {"PID", "Parameter", "Value"}};
    for (const auto& [pid, fields] : values) {
        for (const ParameterValue& field : fields)
            table.rows.push_back({{hexText(pid, 2)}, {field.name}, {valueText(field)}});
    }
    return table;
}

ReportSection freezeFrameSection(const VehicleFacts& facts, CodeDescriptions* descriptions)
{
    ReportSection section = unitSection("Freeze frame", facts, [&](const UnitReading& unit) {
        if (!unit.freezeFrame || unit.freezeFrame->code.empty())
            return ReportTable();
        ReportTable table = valueTable(unit.freezeFrame->values);
        const std::string& code = unit.freezeFrame->code;
        table.rows.insert(table.rows.begin(), {{"02"}, {"Code of the freeze frame"}, {code}});
        table.title = "stored by " + code + " " + descriptionOf(code, descriptions);
        return table;
    });
    const bool isAsked = std::ranges::any_of(
        facts.units, [](const auto& unit) { return unit.second.freezeFrame.has_value(); });
    if (!section.tables.empty())
        section.mark = Mark::attention;
    else if (isAsked)
        section.mark = Mark::ok;
    if (section.tables.empty())
        section.note = isAsked ? "No freeze frame is stored." : "No control unit has told of one.";
    return section;
}

void addAll(ReportTable& table, const std::string& name, const std::vector<std::string>& values)
{
    for (const std::string& value : values)
        table.rows.push_back({{name}, {value}});
}

/// A hint, for a VIN is shown as it was read.
ReportCell vinHint(const std::string& vin)
{
    const VinCheck check = checkVin(vin);
    if (!check.isLengthRight)
        return {std::to_string(vin.size()) + " characters; a VIN has 17", Mark::attention};
    if (!check.areLettersRight)
        return {"holds characters that no VIN has", Mark::attention};
    return {check.doesCheckDigitFit
                ? "well formed, the check digit fits"
                : "well formed; the check digit does not fit, which only North America demands"};
}

std::string infoName(std::uint8_t type)
{
    const Infotype* const known = infotypeOf(type);
    return known != nullptr ? std::string(known->name) : "Information type " + hexText(type, 2);
}

ReportTable informationTable(const UnitReading& unit)
{
    ReportTable table{.columns = {"What", "Value"}};
    if (unit.vin) {
        table.rows.push_back({{"VIN"}, {*unit.vin}});
        table.rows.push_back({{"VIN check"}, vinHint(*unit.vin)});
    }
    addAll(table, "Calibration id", unit.calibrationIds);
    addAll(table, "CVN", unit.cvns);
    if (unit.ecuName)
        table.rows.push_back({{"Name"}, {*unit.ecuName}});
    for (const auto& [type, text] : unit.otherInfo)
        table.rows.push_back({{infoName(type)}, {text}});
    return table;
}

/// How often a monitor has run, and how often it could have: a row a monitor.
ReportTable performanceTable(const UnitReading& unit)
{
    ReportTable table{.columns = {"Monitor", "Completed", "Conditions met", "Ratio"}};
    int completed = -1; // of the row above, whose conditions follow
    for (const auto& [counter, value] : unit.counters) {
        const bool isConditions = counter.find("COND") != std::string::npos;
        const std::string number = std::to_string(value);
        if (isConditions && completed >= 0) {
            table.rows.back()[2].text = number;
            table.rows.back()[3].text = value == 0 ? "-" : numberText(static_cast<double>(completed) / value);
        } else {
            table.rows.push_back(
                {{counterText(counter)}, {isConditions ? "" : number}, {isConditions ? number : ""}, {}});
        }
        completed = counter.find("COMP") != std::string::npos ? value : -1;
    }
    return table;
}

std::string limitText(const std::optional<double>& limit) { return limit ? numberText(*limit) : "-"; }

ReportCell resultCell(const TestResult& test)
{
    if (!test.passed)
        return {"not run", Mark::notSupported};
    return *test.passed ? ReportCell{"passed", Mark::ok} : ReportCell{"failed", Mark::failed};
}

ReportTable testTable(const UnitReading& unit)
{
    ReportTable table{
        .columns = {"Monitor", "Test", "Name", "Value", "Minimum", "Maximum", "Unit", "Result"}};
    for (const TestResult& test : unit.tests)
        table.rows.push_back({{test.mid < 0 ? "" : hexText(test.mid, 2)},
                              {hexText(test.tid, 2)},
                              {test.name},
                              {numberText(test.value)},
                              {limitText(test.min)},
                              {limitText(test.max)},
                              {test.unit},
                              resultCell(test)});
    return table;
}

ReportSection connectionSection(const VehicleFacts& facts)
{
    ReportSection section{.title = "Adapter and bus", .mark = Mark::ok};
    ReportTable table{.columns = {"What", "Value"}};
    table.rows = {{{"Adapter"}, {facts.adapter}}, {{"Protocol"}, {std::string(nameOf(facts.protocol))}}};
    if (!facts.device.empty())
        table.rows.push_back({{"Device"}, {facts.device}});
    if (!facts.voltage.empty())
        table.rows.push_back({{"Voltage at the adapter"}, {facts.voltage}});
    for (const auto& [name, unit] : facts.units)
        table.rows.push_back({{"Control unit"}, {unitText(name, unit)}});
    section.tables.push_back(std::move(table));
    return section;
}

/// Tells of what was not read, rather than not supported.
ReportSection leftOut(ReportSection section, const VehicleFacts& facts)
{
    if (!section.tables.empty())
        return section;
    section.note = facts.isQuick    ? "Not read: this is a quick report."
                   : !facts.isWhole ? "Not read: this report is not whole."
                                    : "No control unit has told of this.";
    section.mark = facts.isWhole && !facts.isQuick ? Mark::notSupported : Mark::none;
    return section;
}

} // namespace

std::string stateText(MonitorState state)
{
    static constexpr std::array words = {"not supported", "not ready", "ready"};
    return words.at(static_cast<std::size_t>(state));
}

std::string vinOf(const VehicleFacts& facts)
{
    for (const auto& [name, unit] : facts.units) {
        if (unit.vin)
            return *unit.vin;
    }
    return {};
}

std::string wordOf(Mark mark)
{
    static constexpr std::array words = {"", "ok", "attention", "failed", "not supported"};
    return words.at(static_cast<std::size_t>(mark));
}

ReportSection linesSection(std::string title, std::string column, const std::vector<std::string>& lines)
{
    ReportTable table{.columns = {std::move(column)}};
    for (const std::string& line : lines)
        table.rows.push_back({{line}});
    return {.title = std::move(title), .tables = {std::move(table)}};
}

std::string unitText(const std::string& name, const UnitReading& unit)
{
    return unit.ecuName ? name + " (" + *unit.ecuName + ")" : name;
}

std::string numberText(double number)
{
    constexpr double thousandth = 1000;
    const double rounded = std::round(number * thousandth) / thousandth;
    std::string text = std::to_string(rounded == 0 ? 0.0 : rounded);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.'))
        text.pop_back();
    return text;
}

namespace {

/// The places of the sections.
enum Place {
    codesPlace,
    readinessPlace,
    framePlace,
    valuesPlace,
    informationPlace,
    performancePlace,
    testsPlace
};

/// Where it belongs that a request has brought no whole answer; nothing for a clearing.
std::optional<Place> placeOf(std::string_view request)
{
    static constexpr auto places = std::to_array<std::pair<std::string_view, Place>>({
        {"0101", readinessPlace},
        {"0141", readinessPlace},
        {"01", valuesPlace},
        {"02", framePlace},
        {"03", codesPlace},
        {"05", testsPlace},
        {"06", testsPlace},
        {"07", codesPlace},
        {"0908", performancePlace},
        {"090B", performancePlace},
        {"09", informationPlace},
        {"0A", codesPlace},
    });
    const auto* const place = std::ranges::find_if(
        places, [request](const auto& known) { return request.starts_with(known.first); });
    return place == places.end() ? std::nullopt : std::optional(place->second);
}

Mark markOf(RequestOutcome::Kind kind)
{
    switch (kind) {
    case RequestOutcome::Kind::notSupported:
        return Mark::notSupported;
    case RequestOutcome::Kind::noAnswer:
    case RequestOutcome::Kind::damaged:
        return Mark::failed;
    default:
        return Mark::attention;
    }
}

/// Adds to the sections what was asked in vain, and why.
void addOutcomes(std::vector<ReportSection>& sections, const VehicleFacts& facts)
{
    const std::string title = "Without a whole answer";
    for (const RequestOutcome& outcome : requestOutcomes(facts)) {
        const auto place = placeOf(outcome.request);
        if (!place)
            continue;
        ReportSection& section = sections.at(*place);
        if (section.tables.empty() || section.tables.back().title != title)
            section.tables.push_back(
                {.title = title, .columns = {"Request", "Asks for", "Control unit", "Answer"}});
        const Mark mark = markOf(outcome.kind);
        section.tables.back().rows.push_back(
            {{outcome.request}, {outcome.subject}, {outcome.unit}, {outcome.text, mark}});
        if (mark != Mark::notSupported && section.mark != Mark::failed)
            section.mark = section.mark == Mark::notSupported ? mark : Mark::attention;
    }
}

} // namespace

std::vector<ReportSection> sectionsOf(const VehicleFacts& facts, CodeDescriptions* descriptions)
{
    const auto ofUnits = [&facts](const char* title, auto tableOf) {
        return leftOut(unitSection(title, facts, tableOf), facts);
    };
    std::vector<ReportSection> sections = {
        codesSection(facts, descriptions),
        readinessSection(facts),
        freezeFrameSection(facts, descriptions),
        ofUnits("Live values", [](const UnitReading& unit) { return valueTable(unit.values); }),
        ofUnits("Vehicle information", informationTable),
        ofUnits("In-use performance", performanceTable),
        ofUnits("Test results", testTable),
        connectionSection(facts)};
    addOutcomes(sections, facts);
    return sections;
}

} // namespace zint
