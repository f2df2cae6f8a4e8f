#include "report/reportJson.h"

#include "shared/fileError.h"
#include "shared/module1.h"
#include "vehicle/exchangeJson.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <nlohmann/json.hpp>

namespace zint {
namespace {

using Json = nlohmann::ordered_json;

constexpr int schema = 1;
constexpr std::array shortfallNames = {"damaged", "busy", "silent"};

/// In a report a unit tells codes of each kind, and what it supports of each service.
Json reportUnitJson(const UnitReading& unit)
{
    Json json = unitJson(unit);
    json.erase("codes");
    for (const auto& [kind, codes] : unit.codes)
        json["codes"][codeKindNames.at(static_cast<std::size_t>(kind))] = codes;
    json.erase("supported");
    for (const auto& [service, items] : unit.supported) {
        Json& list = json["supported"][hexText(service, 2)] = Json::array();
        for (const std::uint8_t item : items)
            list.push_back(hexText(item, 2));
    }
    return json;
}

/// "2026-11-21T15:24:08Z"; null when there is none, as for a transcript.
Json isoTime(std::chrono::system_clock::time_point time)
{
    if (time == std::chrono::system_clock::time_point())
        return {};
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(std::chrono::floor<std::chrono::seconds>(time - day));
    const auto two = [](auto number) {
        const std::string text = std::to_string(number);
        return text.size() < 2 ? "0" + text : text;
    };
    return std::to_string(static_cast<int>(date.year())) + "-" + two(static_cast<unsigned>(date.month())) +
           "-" + two(static_cast<unsigned>(date.day())) + "T" + two(clock.hours().count()) + ":" +
           two(clock.minutes().count()) + ":" + two(clock.seconds().count()) + "Z";
}

Json failuresJson(const VehicleFacts& facts)
{
    Json json = Json::object();
    for (const auto& [command, error] : facts.failures)
        json[command] = errorName(error);
    return json;
}

/// By request and control unit. @param textOf what stands for a unit's value
template <typename Value, typename TextOf>
Json byUnitJson(const std::map<std::string, std::map<std::string, Value>>& all, const TextOf& textOf)
{
    Json json = Json::object();
    for (const auto& [command, units] : all) {
        for (const auto& [unit, value] : units)
            json[command][unit] = textOf(value);
    }
    return json;
}

Json codesJson(const std::vector<ReportComparison::Code>& codes)
{
    Json json = Json::array();
    for (const auto& [unit, kind, code] : codes)
        json.push_back(
            {{"code", code}, {"kind", codeKindNames.at(static_cast<std::size_t>(kind))}, {"unit", unit}});
    return json;
}

Json comparisonJson(const ReportComparison& comparison)
{
    Json json = {{"gone", codesJson(comparison.gone)},
                 {"new", codesJson(comparison.added)},
                 {"monitors", Json::array()}};
    for (const auto& [unit, monitor, before, after] : comparison.monitors)
        json["monitors"].push_back({{"monitor", monitor},
                                    {"unit", unit},
                                    {"before", monitorStateNames.at(static_cast<std::size_t>(before))},
                                    {"after", monitorStateNames.at(static_cast<std::size_t>(after))}});
    return json;
}

UnitReading unitIn(const Json& json)
{
    UnitReading unit;
    const Json codes = json.value("codes", Json::object());
    for (std::size_t kind = 0; kind < codeKindNames.size(); ++kind) {
        if (codes.contains(codeKindNames.at(kind)))
            unit.codes[static_cast<CodeKind>(kind)] =
                codes[codeKindNames.at(kind)].get<std::vector<std::string>>();
    }
    if (json.contains("readiness")) {
        unit.readiness.emplace();
        for (const auto& [monitor, state] : json["readiness"].items()) {
            const auto* const found = std::ranges::find(monitorStateNames, state.get<std::string>(),
                                                        [](const char* name) { return std::string(name); });
            if (found != monitorStateNames.end())
                unit.readiness->monitors.emplace_back(
                    monitor, static_cast<MonitorState>(found - monitorStateNames.begin()));
        }
    }
    return unit;
}

void takeAnswer(VehicleFacts& facts, const std::string& command, const std::string& name,
                const UnitReading& unit)
{
    merge(facts.unit(name), unit);
    facts.shortfalls[command].erase(name);
    facts.refusals[command].erase(name);
    if (unit.isIncomplete)
        facts.shortfalls[command][name] = unit.isBusy ? Shortfall::busy : Shortfall::damaged;
    if (unit.refusal)
        facts.refusals[command][name] = *unit.refusal;
}

} // namespace

std::string reportJson(const ReportHead& head, const VehicleFacts& facts,
                       const std::vector<ExchangeReading>& exchanges,
                       const std::optional<ReportComparison>& comparison)
{
    Json json = {{"schema", schema},
                 {"title", head.title},
                 {"date", isoTime(facts.time)},
                 {"headline", head.headline}};
    if (!head.failure.empty())
        json["failure"] = head.failure;
    json["whole"] = facts.isWhole;
    json["quick"] = facts.isQuick;
    json["adapter"] = {{"name", facts.adapter}, {"device", facts.device}, {"voltage", facts.voltage}};
    json["protocol"] = {{"number", std::string(1, static_cast<char>(facts.protocol))},
                        {"name", nameOf(facts.protocol)}};
    json["units"] = Json::object();
    for (const auto& [name, unit] : facts.units)
        json["units"][name] = reportUnitJson(unit);
    json["unanswered"] = failuresJson(facts);
    json["refusals"] = byUnitJson(facts.refusals, [](std::uint8_t code) { return hexText(code, 2); });
    json["incomplete"] = byUnitJson(facts.shortfalls, [](Shortfall shortfall) {
        return shortfallNames.at(static_cast<std::size_t>(shortfall));
    });
    if (comparison)
        json["comparison"] = comparisonJson(*comparison);
    for (const ExchangeReading& exchange : exchanges)
        json["exchanges"].push_back(exchangeJson(exchange));
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

VehicleFacts factsInJson(std::string_view text, const std::string& path)
{
    const Json json = Json::parse(text, nullptr, false);
    if (!json.is_object() || json.value("schema", 0) != schema || !json.contains("units"))
        throw FileError("\"" + path + "\" is no vehicle report in JSON");
    VehicleFacts facts;
    try {
        for (const auto& [name, unit] : json["units"].items())
            facts.unit(name) = unitIn(unit);
    } catch (const Json::exception&) {
        throw FileError("\"" + path + "\" is a damaged vehicle report");
    }
    return facts;
}

VehicleFacts factsOf(const std::vector<ExchangeReading>& exchanges)
{
    VehicleFacts facts;
    for (const ExchangeReading& exchange : exchanges) {
        facts.failures.erase(exchange.command);
        if (exchange.units.empty() && exchange.error != ReplyError::none)
            facts.failures[exchange.command] = exchange.error;
        for (const auto& [name, unit] : exchange.units)
            takeAnswer(facts, exchange.command, name, unit);
    }
    return facts;
}

} // namespace zint
