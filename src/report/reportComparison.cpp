#include "report/reportComparison.h"

#include "vehicle/monitorStatus.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace zint {
namespace {

using Code = ReportComparison::Code;

/// Sorted, each once.
std::set<Code> codesOf(const VehicleFacts& facts)
{
    std::set<Code> all;
    for (const auto& [name, unit] : facts.units) {
        for (const auto& [kind, codes] : unit.codes) {
            for (const std::string& code : codes)
                all.insert({name, kind, code});
        }
    }
    return all;
}

bool tells(const VehicleFacts& facts, const std::string& name, CodeKind kind)
{
    const UnitReading* const unit = findReading(facts.units, name);
    return unit != nullptr && unit->codes.contains(kind);
}

/// The codes of one report that the other one lacks, though it tells of codes of that kind.
std::vector<Code> missing(const VehicleFacts& from, const VehicleFacts& in)
{
    const std::set<Code> known = codesOf(in);
    std::vector<Code> rest;
    std::ranges::copy_if(codesOf(from), std::back_inserter(rest), [&](const Code& code) {
        return !known.contains(code) && tells(in, code.unit, code.kind);
    });
    return rest;
}

std::optional<MonitorState> stateIn(const VehicleFacts& facts, const std::string& name,
                                    const std::string& monitor)
{
    const UnitReading* const unit = findReading(facts.units, name);
    return unit != nullptr && unit->readiness ? unit->readiness->stateOf(monitor) : std::nullopt;
}

std::string codeLine(const char* what, const Code& code)
{
    return std::string(what) + ": " + code.code + " (" +
           codeKindNames.at(static_cast<std::size_t>(code.kind)) + ", " + code.unit + ")";
}

} // namespace

ReportComparison compare(const VehicleFacts& before, const VehicleFacts& after)
{
    ReportComparison comparison{.gone = missing(before, after), .added = missing(after, before)};
    for (const auto& [name, unit] : after.units) {
        if (!unit.readiness)
            continue;
        for (const auto& [monitor, state] : unit.readiness->monitors) {
            const auto former = stateIn(before, name, monitor);
            if (former && *former != state)
                comparison.monitors.push_back({name, monitor, *former, state});
        }
    }
    return comparison;
}

std::vector<std::string> comparisonLines(const ReportComparison& comparison)
{
    std::vector<std::string> lines;
    for (const Code& code : comparison.gone)
        lines.push_back(codeLine("gone", code));
    for (const Code& code : comparison.added)
        lines.push_back(codeLine("new", code));
    for (const auto& [unit, name, before, after] : comparison.monitors)
        lines.push_back(monitorText(name) + " (" + unit + "): " + stateText(before) + ", now " +
                        stateText(after));
    return lines;
}

ReportSection comparisonSection(const ReportComparison& comparison, const std::string& earlier)
{
    std::vector<std::string> lines = comparisonLines(comparison);
    if (lines.empty())
        lines.emplace_back("Codes and monitors are the same.");
    return linesSection("Comparison", "Since " + earlier, lines);
}

} // namespace zint
