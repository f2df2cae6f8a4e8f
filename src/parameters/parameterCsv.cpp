#include "parameters/parameterCsv.h"

#include "parameters/csvParameterReader.h"
#include "shared/csvText.h"
#include "shared/utf8.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <utility>

namespace zint {
namespace {

/// Brings the lines of a file into a table.
class CsvImporter {
public:
    CsvImporter(OwnParameters& table, SameName sameName) : table_(table), sameName_(sameName) {}

    void take(std::size_t line, OwnParameter parameter);
    void refuse(std::size_t line, std::string_view name, std::string why);

    CsvImport result;

private:
    void put(std::size_t line, OwnParameter parameter, std::vector<OwnParameterPointer>& taken);

    OwnParameters& table_;
    SameName sameName_;
    std::map<std::int32_t, std::size_t> lineOf_; ///< in which the file told a parameter first, by its number
};

void CsvImporter::take(std::size_t line, OwnParameter parameter)
{
    parameter = normalised(std::move(parameter));
    const OwnParameterPointer same = table_.findName(parameter.name);
    if (!same)
        return put(line, std::move(parameter), result.added);
    parameter.number = same->number;
    parameter.filter = same->filter;
    const auto [told, isFirst] = lineOf_.emplace(same->number, line);
    if (parameter == *same)
        result.present.push_back({line, parameter.name, "the same is already there"});
    else if (!isFirst)
        refuse(line, parameter.name, "line " + std::to_string(told->second) + " has the same name");
    else if (sameName_ == SameName::keep)
        refuse(line, parameter.name, "there is another parameter of this name");
    else
        put(line, std::move(parameter), result.replaced);
}

void CsvImporter::put(std::size_t line, OwnParameter parameter, std::vector<OwnParameterPointer>& taken)
{
    const std::string name = parameter.name;
    StoredParameter stored = table_.put(std::move(parameter));
    if (stored.fault)
        return refuse(line, name, faultText(*stored.fault));
    lineOf_.emplace(stored.parameter->number, line);
    taken.push_back(std::move(stored.parameter));
}

void CsvImporter::refuse(std::size_t line, std::string_view name, std::string why)
{
    constexpr std::size_t mostShown = 60;
    result.refused.push_back({line, std::string(firstCharacters(name, mostShown)), std::move(why)});
}

/// At the beginning of a line, where some names would be comments.
std::string firstField(const std::string& name)
{
    const std::string field = csvField(name);
    return isCsvComment(field) ? '"' + field + '"' : field;
}

std::string decimalText(double number)
{
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number);
    return {text.data(), end.ptr};
}

} // namespace

std::string lineText(const CsvLine& line)
{
    return "line " + std::to_string(line.number) + (line.name.empty() ? "" : ", \"" + line.name + "\"") +
           ": " + line.why;
}

std::string importText(const CsvImport& import)
{
    const std::array<std::pair<std::size_t, const char*>, 3> counts = {
        {{import.replaced.size(), " replaced"},
         {import.present.size(), " already there"},
         {import.refused.size(), " refused"}}};
    std::string text = std::to_string(import.added.size()) +
                       (import.added.size() == 1 ? " parameter added" : " parameters added");
    for (const auto& [count, words] : counts) {
        if (count > 0)
            text += ", " + std::to_string(count) + words;
    }
    return text;
}

CsvImport importCsv(std::istream& stream, OwnParameters& table, SameName sameName)
{
    CsvParameterReader reader(stream);
    CsvImporter importer(table, sameName);
    while (auto line = reader.next()) {
        if (auto* const parameter = std::get_if<OwnParameter>(&*line))
            importer.take(reader.number(), std::move(*parameter));
        else if (auto* const refusal = std::get_if<CsvRefusal>(&*line))
            importer.refuse(reader.number(), refusal->name, std::move(refusal->why));
    }
    return std::move(importer.result);
}

std::size_t exportCsv(std::ostream& stream, const OwnParameters& table)
{
    for (std::size_t i = 0; i < csvColumnCount; ++i)
        stream << (i == 0 ? "" : ",") << csvColumnNames.at(i);
    stream << lineEnd;
    std::size_t filtered = 0;
    for (const OwnParameterPointer& parameter : table.all()) {
        stream << firstField(parameter->name) << ',' << csvField(parameter->shortName) << ",0x"
               << parameter->request << ',' << csvField(parameter->formula) << ','
               << decimalText(parameter->minimum) << ',' << decimalText(parameter->maximum) << ','
               << csvField(parameter->unit) << ',' << parameter->header << lineEnd;
        filtered += static_cast<std::size_t>(!parameter->filter.empty());
    }
    return filtered;
}

} // namespace zint
