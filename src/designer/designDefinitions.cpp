#include "designer/designDefinitions.h"

#include "designer/listedNames.h"
#include "shared/fileError.h"
#include "shared/module1.h"

#include <algorithm>
#include <utility>

namespace zint {
namespace {

std::string eventText(const DesignEntry& event)
{
    return "\r\n   " + std::to_string(event.conversion) + ": " + event.code + " " + event.description;
}

std::string undefinedText(const Design& design, const Undefined& undefined, const OwnParameters& table)
{
    std::string text;
    for (const std::int32_t number : undefined.missing) {
        for (const DesignEntry& event : design.events)
            text += event.conversion == number ? eventText(event) : "";
    }
    for (const std::size_t place : undefined.differing) {
        const DesignEntry& event = design.events[place];
        text += eventText(event) + " (" + std::to_string(event.conversion) + " is " +
                table.find(event.conversion)->name + " here)";
    }
    return text;
}

bool changesNumbers(const TakenDefinitions& taken)
{
    return std::ranges::any_of(taken.numbers, [](const auto& pair) { return pair.first != pair.second; });
}

} // namespace

DesignDefinitions::DesignDefinitions(ParametersFile file, Prompts& prompts)
    : file_(std::move(file)), prompts_(prompts)
{
    try {
        reload();
    } catch (const FileError& error) {
        loadFailure_ = error.what();
    }
}

void DesignDefinitions::define(std::vector<DesignEntry>& events) const
{
    for (DesignEntry& event : events) {
        const OwnParameterPointer now = event.own ? table_.find(event.conversion) : nullptr;
        if (now && now->request != event.own->request)
            event.code = now->request;
    }
    Design design;
    design.events = std::move(events);
    zint::define(design, table_);
    events = std::move(design.events);
}

void DesignDefinitions::tellLoadFailure()
{
    if (const std::string failure = std::exchange(loadFailure_, {}); !failure.empty())
        prompts_.message("Your own parameters can't be read: " + failure);
}

bool DesignDefinitions::lieBeside(const std::string& path)
{
    return !path.empty() && fileExists(definitionsPath(path));
}

bool DesignDefinitions::takeOver(Design& design, const std::string& path)
{
    if (!lieBeside(path))
        return false;
    const OwnParameters definitions = loadParameters(definitionsPath(path));
    OwnParameters copy = table_;
    const TakenDefinitions taken = takeDefinitions(design, definitions, copy);
    std::vector<std::string> names;
    names.reserve(taken.added.size());
    for (const OwnParameterPointer& parameter : taken.added)
        names.push_back(parameter->name + " (" + parameter->request + ")");
    if (!names.empty() && !prompts_.confirm("This design comes with own parameters that you do not have:" +
                                                listedNames(names) + "\r\n\r\nAdd them to yours?",
                                            "Own Parameters"))
        return false;
    std::map<std::int32_t, std::int32_t> numbers = taken.numbers;
    if (!names.empty())
        table_ = file_.change(
            [&](OwnParameters& table) { numbers = takeDefinitions(design, definitions, table).numbers; });
    renumber(design, numbers);
    return changesNumbers({.added = {}, .numbers = numbers});
}

void DesignDefinitions::tellUndefined(Design design)
{
    const Undefined undefined = zint::define(design, table_);
    if (!undefined.isNone())
        prompts_.message("This design uses own parameters that are not defined here:" +
                         undefinedText(design, undefined, table_) +
                         "\r\n\r\nTheir events give no values. Define them under Edit, Own Parameters, or "
                         "let the design be saved with its definitions where it comes from.");
}

bool DesignDefinitions::contradict(const Design& design, const std::string& path)
{
    if (!lieBeside(path))
        return false;
    try {
        const OwnParameters present = loadParameters(definitionsPath(path));
        return std::ranges::any_of(design.events, [&](const DesignEntry& event) {
            const OwnParameterPointer other = event.own ? present.find(event.conversion) : nullptr;
            return other && *other != *event.own;
        });
    } catch (const FileError&) { // it defines nothing
        return false;
    }
}

void DesignDefinitions::saveBeside(const Design& design, const std::string& path)
{
    OwnParameters definitions = definitionsOf(design);
    Design undefined = design;
    if (lieBeside(path)) {
        const OwnParameters present = loadParameters(definitionsPath(path));
        zint::define(undefined, present);
        for (const DesignEntry& event : undefined.events) {
            if (event.own != nullptr && definitions.find(event.conversion) == nullptr)
                definitions.put(*event.own);
        }
    }
    if (!definitions.all().empty())
        saveParameters(definitionsPath(path), definitions);
}

} // namespace zint
