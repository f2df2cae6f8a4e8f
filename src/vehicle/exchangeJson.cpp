#include "vehicle/exchangeJson.h"

#include "shared/module1.h"
#include "vehicle/vehicleRequest.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <nlohmann/json.hpp>

namespace zint {
namespace {

using Json = nlohmann::ordered_json;

std::string twoDigits(int id) { return hexText(id, 2); }

/// A number without a decimal point where it is whole.
Json numberJson(double number)
{
    constexpr double largestExact = 9007199254740992; // 2^53
    if (std::trunc(number) == number && std::abs(number) < largestExact)
        return static_cast<std::int64_t>(number);
    return number;
}

Json numberJson(const std::optional<double>& number) { return number ? numberJson(*number) : Json(); }

Json fieldJson(const ParameterValue& field)
{
    if (field.number)
        return {{"value", numberJson(*field.number)}, {"unit", field.unit}};
    return {{"value", field.text}, {"unit", ""}};
}

template <typename Values, typename Key>
Json mapJson(const Values& values, const Key& key)
{
    Json all = Json::object();
    for (const auto& [pid, value] : values)
        all[key(pid)] = valuesJson(value);
    return all;
}

Json readinessJson(const Readiness& readiness)
{
    Json monitors = Json::object();
    for (const auto& [name, state] : readiness.monitors)
        monitors[name] = monitorStateNames.at(static_cast<std::size_t>(state));
    return monitors;
}

Json frameJson(const FreezeFrame& frame)
{
    Json json = {{"frame", frame.frame}};
    if (frame.isCodeTold)
        json["dtc"] = frame.code.empty() ? Json() : Json(frame.code);
    if (!frame.values.empty())
        json["values"] = mapJson(frame.values, twoDigits);
    return json;
}

Json testJson(const TestResult& test)
{
    Json json = {{"mid", twoDigits(test.mid)},
                 {"tid", twoDigits(test.tid)},
                 {"value", numberJson(test.value)},
                 {"min", numberJson(test.min)},
                 {"max", numberJson(test.max)},
                 {"unit", test.unit},
                 {"passed", test.passed ? Json(*test.passed) : Json()}};
    if (!test.name.empty())
        json["name"] = test.name;
    return json;
}

void addStatus(Json& json, const UnitReading& unit)
{
    for (const auto& [kind, codes] : unit.codes)
        json["codes"] = codes;
    if (unit.mil)
        json["mil"] = *unit.mil;
    if (unit.dtcCount)
        json["dtcCount"] = *unit.dtcCount;
    for (const auto& readiness : {unit.readiness, unit.cycleReadiness}) {
        if (!readiness)
            continue;
        json[json.contains("readiness") ? "cycleReadiness" : "readiness"] = readinessJson(*readiness);
        json["compressionIgnition"] = readiness->isCompressionIgnition;
    }
    for (const auto& [service, ids] : unit.supported) {
        json["supported"] = Json::array();
        for (const std::uint8_t id : ids)
            json["supported"].push_back(twoDigits(id));
    }
}

void addInfo(Json& json, const UnitReading& unit)
{
    if (unit.vin)
        json["vin"] = *unit.vin;
    if (!unit.calibrationIds.empty())
        json["calibrationIds"] = unit.calibrationIds;
    if (!unit.cvns.empty())
        json["cvns"] = unit.cvns;
    if (unit.ecuName)
        json["ecuName"] = *unit.ecuName;
    for (const auto& [infotype, text] : unit.otherInfo)
        json["info"][twoDigits(infotype)] = text;
    for (const auto& [name, count] : unit.counters)
        json["counters"][name] = count;
    for (const auto& [name, count] : unit.counters)
        json["inUse"].push_back(count);
}

std::string plainText(const Json& json);

/// Its members as "name value", without the names where they say nothing new.
std::string membersText(const Json& object)
{
    if (object.contains("fields"))
        return plainText(object["fields"]);
    std::string text;
    for (const auto& [name, value] : object.items()) {
        const std::string words = plainText(value);
        if (words.empty())
            continue;
        const bool isBare = name == "value" || name == "unit" || name == "name";
        text += (text.empty() ? "" : (name == "unit" ? " " : ", ")) + (isBare ? "" : name + " ");
        text += words;
    }
    return text;
}

std::string itemsText(const Json& list)
{
    std::string text;
    for (const Json& item : list)
        text += (text.empty() ? "" : (item.is_object() ? "; " : ", ")) + plainText(item);
    return text;
}

std::string plainText(const Json& json)
{
    if (json.is_string())
        return json.get<std::string>();
    if (!json.is_structured())
        return json.is_null() ? "-" : json.dump();
    const std::string text = json.is_object() ? membersText(json) : itemsText(json);
    return text.empty() ? "none" : text;
}

} // namespace

nlohmann::ordered_json unitJson(const UnitReading& unit)
{
    Json json = Json::object();
    addStatus(json, unit);
    if (!unit.values.empty())
        json["values"] = mapJson(unit.values, [](int pid) { return "01" + twoDigits(pid); });
    if (unit.freezeFrame)
        json["freezeFrame"] = frameJson(*unit.freezeFrame);
    addInfo(json, unit);
    for (const TestResult& test : unit.tests)
        json["tests"].push_back(testJson(test));
    if (unit.cleared)
        json["cleared"] = true;
    if (unit.refusal || unit.isBusy)
        json["refusal"] = twoDigits(unit.refusal.value_or(answerFollows));
    if (unit.isIncomplete)
        json["incomplete"] = true;
    return json;
}

std::string_view errorName(ReplyError error)
{
    static constexpr auto names = std::to_array<std::string_view>(
        {"", "noData", "unableToConnect", "busInitError", "busError", "canError", "stopped", "bufferFull",
         "dataError", "rxError", "lowVoltageReset", "activityAlert", "unknownCommand", "noPrompt", "empty",
         "garbled"});
    return names.at(static_cast<std::size_t>(error));
}

nlohmann::ordered_json valuesJson(const std::vector<ParameterValue>& values)
{
    if (values.empty())
        return Json::object();
    const ParameterValue* main = &values.front();
    for (const ParameterValue& field : values) {
        if (!main->number && field.number)
            main = &field;
    }
    Json json = fieldJson(*main);
    if (values.size() < 2)
        return json;
    for (const ParameterValue& field : values) {
        Json named = {{"name", field.name}};
        named.update(fieldJson(field));
        json["fields"].push_back(std::move(named));
    }
    return json;
}

nlohmann::ordered_json exchangeJson(const ExchangeReading& exchange)
{
    Json json = {{"command", exchange.command}};
    if (exchange.error != ReplyError::none)
        json["error"] = errorName(exchange.error);
    json["units"] = Json::object();
    for (const auto& [name, unit] : exchange.units)
        json["units"][name] = unitJson(unit);
    return json;
}

std::string exchangesJson(const std::vector<ExchangeReading>& exchanges)
{
    Json json = {{"exchanges", Json::array()}};
    for (const ExchangeReading& exchange : exchanges)
        json["exchanges"].push_back(exchangeJson(exchange));
    return json.dump(2) + "\n";
}

std::string exchangesText(const std::vector<ExchangeReading>& exchanges)
{
    std::string text;
    for (const ExchangeReading& exchange : exchanges) {
        const Json json = exchangeJson(exchange);
        text += exchange.command + (json.contains("error") ? ": " + plainText(json["error"]) : "") + "\n";
        for (const auto& [name, unit] : json["units"].items()) {
            for (const auto& [member, value] : unit.items()) {
                if (member == "inUse")
                    continue; // its counters have names, too
                text.append("  ").append(name).append("  ").append(member).append(": ");
                text += plainText(value) + "\n";
            }
        }
    }
    return text;
}

} // namespace zint
