#include "parameters/parametersFile.h"

#include "shared/fileLock.h"
#include "shared/module1.h"
#include "shared/textFile.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <system_error>
#include <thread>
#include <utility>

namespace zint {
namespace {

using Json = nlohmann::ordered_json;

constexpr int schema = 1;
constexpr int deepest = 32; ///< of values within values; what is deeper is no table

using TextMember = std::pair<const char*, std::string OwnParameter::*>;

constexpr std::array textMembers = {
    TextMember{"name", &OwnParameter::name},       TextMember{"shortName", &OwnParameter::shortName},
    TextMember{"request", &OwnParameter::request}, TextMember{"header", &OwnParameter::header},
    TextMember{"filter", &OwnParameter::filter},   TextMember{"formula", &OwnParameter::formula},
    TextMember{"unit", &OwnParameter::unit},
};

Json jsonOf(const OwnParameter& parameter)
{
    Json json{{"number", parameter.number}};
    for (const auto& [key, text] : textMembers) {
        if (!(parameter.*text).empty())
            json[key] = parameter.*text;
    }
    if (parameter.maximum > parameter.minimum) {
        json["minimum"] = parameter.minimum;
        json["maximum"] = parameter.maximum;
    }
    return json;
}

[[noreturn]] void refuse(const std::string& text) { throw FileError(text); }

std::int32_t numberIn(const Json& json, const char* key, std::int32_t last)
{
    const Json number = json.value(key, Json());
    if (!number.is_number_integer() || number < OwnParameter::firstNumber || number > last)
        refuse("\"" + std::string(key) + "\" must be a number from " +
               std::to_string(OwnParameter::firstNumber) + " to " + std::to_string(last));
    return number.get<std::int32_t>();
}

double decimalIn(const Json& json, const char* key)
{
    if (!json.contains(key))
        return 0;
    if (!json[key].is_number())
        refuse("\"" + std::string(key) + "\" must be a number");
    return json[key].get<double>();
}

/// Takes what it knows out of an entry.
OwnParameter takeParameter(Json& json)
{
    OwnParameter parameter{.number = numberIn(json, "number", OwnParameters::lastNumber),
                           .minimum = decimalIn(json, "minimum"),
                           .maximum = decimalIn(json, "maximum")};
    for (const char* const key : {"number", "minimum", "maximum"})
        json.erase(key);
    for (const auto& [key, text] : textMembers) {
        if (!json.contains(key))
            continue;
        if (!json[key].is_string())
            refuse("\"" + std::string(key) + "\" must be a text");
        parameter.*text = json[key].get<std::string>();
        json.erase(key);
    }
    return parameter;
}

void readEntry(Json& json, OwnParameters& table)
{
    if (!json.is_object())
        refuse("it must stand in braces");
    const OwnParameter parameter = takeParameter(json);
    if (table.find(parameter.number))
        refuse("another one has the number " + std::to_string(parameter.number));
    if (const StoredParameter stored = table.put(parameter); stored.fault)
        refuse("\"" + parameter.name + "\": " + faultText(*stored.fault));
    if (!json.empty())
        table.foreign.push_back({parameter.number, json.dump()});
}

Json parsed(std::string_view text)
{
    const auto isFlat = [](int depth, Json::parse_event_t /*event*/, const Json& /*value*/) {
        if (depth > deepest)
            refuse("it is no table of parameters");
        return true;
    };
    try {
        return Json::parse(text, isFlat);
    } catch (const Json::parse_error& error) {
        const auto lines = std::ranges::count(text.substr(0, error.byte), '\n');
        refuse("line " + std::to_string(lines + 1) + " is no JSON");
    } catch (const Json::exception&) { // a number beyond all bounds
        refuse("it is no table of parameters");
    }
}

/// Waits as long as another program takes to write the file.
void take(FileLock& lock, const std::string& path)
{
    constexpr int tries = 50;
    constexpr std::chrono::milliseconds pause{10};
    for (int i = 0; i < tries; ++i) {
        if (lock.take(path))
            return;
        std::this_thread::sleep_for(pause);
    }
    throw FileError("\"" + path + "\" is being changed by another program; try again later");
}

} // namespace

std::string parametersJson(const OwnParameters& table)
{
    Json entries = Json::array();
    for (const OwnParameterPointer& parameter : table.all()) {
        entries.push_back(jsonOf(*parameter));
        const auto found =
            std::ranges::find(table.foreign, parameter->number, &OwnParameters::Foreign::number);
        if (found != table.foreign.end())
            entries.back().update(Json::parse(found->json));
    }
    const Json json{{"schema", schema}, {"next", table.nextNumber()}, {"parameters", std::move(entries)}};
    return json.dump(2) + "\n";
}

OwnParameters readParametersJson(std::string_view text)
{
    Json json = parsed(text);
    if (!json.is_object() || !json.contains("schema") || !json["parameters"].is_array())
        refuse("it is no table of parameters");
    if (json["schema"] != schema)
        refuse("it was written by a newer version of this program");
    OwnParameters table;
    std::size_t count = 0;
    for (Json& entry : json["parameters"]) {
        ++count;
        try {
            readEntry(entry, table);
        } catch (const FileError& error) {
            refuse("parameter " + std::to_string(count) + ": " + error.what());
        }
    }
    if (json.contains("next"))
        table.keepNumbersFrom(numberIn(json, "next", OwnParameters::lastNumber + 1));
    return table;
}

Undefined defineBeside(Design& design, const std::string& path, const ParametersFile& file)
{
    if (std::ranges::none_of(design.events, isOwnConversion, &DesignEntry::conversion))
        return {};
    OwnParameters table = file.load();
    if (const std::string beside = definitionsPath(path); !path.empty() && fileExists(beside))
        renumber(design, takeDefinitions(design, loadParameters(beside), table).numbers);
    return define(design, table);
}

OwnParameters loadParameters(const std::string& path)
{
    std::string text = contentOf(path);
    if (text.starts_with(byteOrderMark)) // an editor's
        text.erase(0, byteOrderMark.size());
    try {
        return readParametersJson(text);
    } catch (const FileError& error) {
        throw FileError("\"" + path + "\": " + error.what());
    }
}

void saveParameters(const std::string& path, const OwnParameters& table)
{
    replaceFile(path, [&](std::ostream& stream) { stream << parametersJson(table); });
}

OwnParameters ParametersFile::load() const
{
    return fileExists(path_) ? loadParameters(path_) : OwnParameters();
}

OwnParameters ParametersFile::change(const std::function<void(OwnParameters&)>& change) const
{
    std::error_code ignored; // writing tells it
    std::filesystem::create_directories(utf8Path(path_).parent_path(), ignored);
    FileLock lock;
    take(lock, path_);
    OwnParameters table = load();
    const std::string before = parametersJson(table);
    change(table);
    if (parametersJson(table) != before)
        saveParameters(path_, table);
    return table;
}

} // namespace zint
