#include "report/reportSections.h"

#include "dtcdb/dtcText.h"
#include "report/reportHeadline.h"
#include "shared/module1.h"

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

ReportSection codesSection(const VehicleFacts& facts, CodeDescriptions* descriptions)
{
    constexpr std::array kinds = {std::pair(CodeKind::stored, "stored"),
                                  std::pair(CodeKind::pending, "pending"),
                                  std::pair(CodeKind::permanent, "permanent")};
    ReportSection section{.title = "Trouble codes"};
    ReportTable table{.columns = {"Code", "Kind", "Control unit", "Description"}};
    bool isTold = false;
    for (const auto& [name, unit] : facts.units) {
        for (const auto& [kind, word] : kinds) {
            const auto codes = unit.codes.find(kind);
            if (codes == unit.codes.end())
                continue;
            isTold = true;
            for (const std::string& code : codes->second)
                table.rows.push_back({{code, Mark::attention},
                                      {word},
                                      {unitText(name, unit)},
                                      {descriptionOf(code, descriptions)}});
        }
    }
    if (table.rows.empty())
        section.note = isTold ? "No codes reported." : "No control unit has told of codes.";
    else
        section.tables.push_back(std::move(table));
    section.mark = !section.tables.empty() ? Mark::attention : isTold ? Mark::ok : Mark::failed;
    return section;
}

ReportCell stateCell(MonitorState state)
{
    switch (state) {
    case MonitorState::complete:
        return {"ready", Mark::ok};
    case MonitorState::incomplete:
        return {"not ready", Mark::attention};
    case MonitorState::unsupported:
        break;
    }
    return {"not supported", Mark::notSupported};
}

MonitorState stateOf(const std::optional<Readiness>& readiness, const std::string& monitor)
{
    if (readiness) {
        for (const auto& [name, state] : readiness->monitors) {
            if (name == monitor)
                return state;
        }
    }
    return MonitorState::unsupported;
}

ReportSection readinessSection(const VehicleFacts& facts)
{
    ReportSection section{.title = "Readiness"};
    for (const auto& [name, unit] : facts.units) {
        if (!unit.readiness)
            continue;
        ReportTable table{.title = unitText(name, unit),
                          .columns = {"Monitor", "Since clearing", "This drive cycle"}};
        for (const auto& [monitor, state] : unit.readiness->monitors)
            table.rows.push_back(
                {{monitorText(monitor)},
                 stateCell(state),
                 unit.cycleReadiness ? stateCell(stateOf(unit.cycleReadiness, monitor)) : ReportCell()});
        section.tables.push_back(std::move(table));
    }
    const MonitorCounts counts = monitorCounts(facts);
    section.mark = section.tables.empty() ? Mark::failed : counts.incomplete > 0 ? Mark::attention : Mark::ok;
    if (section.tables.empty())
        section.note = "No control unit has told of its monitors.";
    return section;
}

std::string valueText(const ParameterValue& value)
{
    if (!value.number)
        return value.text;
    const std::string number = numberText(*value.number);
    return value.unit.empty() ? number : number + " " + value.unit;
}

ReportTable valueTable(const std::string& title,
                       const std::map<std::uint8_t, std::vector<ParameterValue>>& values)
{
    ReportTable table{.title = title, .columns = {"PID", "Parameter", "Value"}};
    for (const auto& [pid, fields] : values) {
        for (const ParameterValue& field : fields)
            table.rows.push_back({{hexText(pid, 2)}, {field.name}, {valueText(field)}});
    }
    return table;
}

ReportSection freezeFrameSection(const VehicleFacts& facts)
{
    ReportSection section{.title = "Freeze frame", .mark = Mark::notSupported};
    for (const auto& [name, unit] : facts.units) {
        if (!unit.freezeFrame)
            continue;
        section.mark = section.mark == Mark::attention ? Mark::attention : Mark::ok;
        if (unit.freezeFrame->code.empty())
            continue;
        section.mark = Mark::attention;
        section.tables.push_back(valueTable(unitText(name, unit) + ", stored by " + unit.freezeFrame->code,
                                            unit.freezeFrame->values));
    }
    if (section.tables.empty())
        section.note =
            section.mark == Mark::ok ? "No freeze frame is stored." : "No control unit has told of one.";
    return section;
}

ReportSection valuesSection(const VehicleFacts& facts)
{
    ReportSection section{.title = "Live values", .mark = Mark::notSupported};
    for (const auto& [name, unit] : facts.units) {
        if (unit.values.empty())
            continue;
        section.mark = Mark::ok;
        section.tables.push_back(valueTable(unitText(name, unit), unit.values));
    }
    return section;
}

void addAll(ReportTable& table, const std::string& name, const std::vector<std::string>& values)
{
    for (const std::string& value : values)
        table.rows.push_back({{name}, {value}});
}

ReportSection informationSection(const VehicleFacts& facts)
{
    ReportSection section{.title = "Vehicle information", .mark = Mark::notSupported};
    for (const auto& [name, unit] : facts.units) {
        ReportTable table{.title = unitText(name, unit), .columns = {"What", "Value"}};
        if (unit.vin)
            table.rows.push_back({{"VIN"}, {*unit.vin}});
        addAll(table, "Calibration id", unit.calibrationIds);
        addAll(table, "CVN", unit.cvns);
        if (unit.ecuName)
            table.rows.push_back({{"Name"}, {*unit.ecuName}});
        for (const auto& [type, text] : unit.otherInfo)
            table.rows.push_back({{"Information type " + hexText(type, 2)}, {text}});
        if (table.rows.empty())
            continue;
        section.mark = Mark::ok;
        section.tables.push_back(std::move(table));
    }
    return section;
}

ReportSection performanceSection(const VehicleFacts& facts)
{
    ReportSection section{.title = "In-use performance", .mark = Mark::notSupported};
    for (const auto& [name, unit] : facts.units) {
        if (unit.counters.empty())
            continue;
        ReportTable table{.title = unitText(name, unit), .columns = {"Counter", "Value"}};
        for (const auto& [counter, value] : unit.counters)
            table.rows.push_back({{counter}, {std::to_string(value)}});
        section.mark = Mark::ok;
        section.tables.push_back(std::move(table));
    }
    return section;
}

std::string limitText(const std::optional<double>& limit) { return limit ? numberText(*limit) : "-"; }

ReportCell resultCell(const TestResult& test)
{
    if (!test.passed)
        return {"not run", Mark::notSupported};
    return *test.passed ? ReportCell{"passed", Mark::ok} : ReportCell{"failed", Mark::failed};
}

ReportSection testsSection(const VehicleFacts& facts)
{
    ReportSection section{.title = "Test results", .mark = Mark::notSupported};
    for (const auto& [name, unit] : facts.units) {
        if (unit.tests.empty())
            continue;
        ReportTable table{
            .title = unitText(name, unit),
            .columns = {"Monitor", "Test", "Name", "Value", "Minimum", "Maximum", "Unit", "Result"}};
        for (const TestResult& test : unit.tests) {
            section.mark = section.mark == Mark::failed || test.passed == false ? Mark::failed : Mark::ok;
            table.rows.push_back({{test.mid < 0 ? "" : hexText(test.mid, 2)},
                                  {hexText(test.tid, 2)},
                                  {test.name},
                                  {numberText(test.value)},
                                  {limitText(test.min)},
                                  {limitText(test.max)},
                                  {test.unit},
                                  resultCell(test)});
        }
        section.tables.push_back(std::move(table));
    }
    return section;
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
    if (section.tables.empty() && section.note.empty())
        section.note =
            facts.isQuick ? "Not read: this is a quick report." : "No control unit has told of this.";
    return section;
}

} // namespace

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

ReportSection clearedSection(const std::vector<std::string>& lines)
{
    ReportSection section{.title = "Clearing"};
    ReportTable table{.columns = {"What has come of it"}};
    for (const std::string& line : lines)
        table.rows.push_back({{line}});
    section.tables.push_back(std::move(table));
    return section;
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

std::vector<ReportSection> sectionsOf(const VehicleFacts& facts, CodeDescriptions* descriptions)
{
    return {codesSection(facts, descriptions),
            readinessSection(facts),
            freezeFrameSection(facts),
            leftOut(valuesSection(facts), facts),
            leftOut(informationSection(facts), facts),
            leftOut(performanceSection(facts), facts),
            leftOut(testsSection(facts), facts),
            connectionSection(facts)};
}

} // namespace zint
