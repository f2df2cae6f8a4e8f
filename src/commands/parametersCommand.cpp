#include "commands/parametersCommand.h"

#include "commands/commandSession.h"
#include "commands/options.h"
#include "commands/ownDefinitions.h"
#include "parameters/ownReply.h"
#include "parameters/parametersFile.h"
#include "parameters/standardParameters.h"
#include "shared/fileError.h"
#include "shared/module1.h"
#include "shared/textFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <sstream>
#include <system_error>

namespace zint {
namespace {

ParametersFile fileAt(const std::string& path)
{
    return path.empty() ? userParametersFile() : ParametersFile::at(path);
}

/// @throws FileError when there is none
OwnParameterPointer require(const OwnParameters& table, const std::string& name)
{
    const auto number = integerIn(name);
    OwnParameterPointer found = table.findName(name);
    if (!found && number)
        found = table.find(*number);
    if (!found)
        throw FileError("there is no parameter \"" + name + "\"; zint-obd parameters list shows them");
    return found;
}

using Row = std::array<std::string, 6>;

/// In the order in which lists show it.
Row rowOf(const OwnParameter& parameter)
{
    return {std::to_string(parameter.number),
            parameter.request,
            parameter.header,
            parameter.name,
            parameter.unit,
            parameter.formula};
}

std::string rangeText(const StandardParameter& parameter, UnitSystem units)
{
    const OwnParameter bare;
    return parameter.field.hasWords ? "words"
                                    : valueText(bare, parameter.minimum(units)) + " to " +
                                          valueText(bare, parameter.maximum(units));
}

/// With the range in place of a formula.
Row rowOf(const StandardParameter& parameter, UnitSystem units)
{
    return {std::to_string(numberOf(parameter.conversion(units))),
            parameter.code,
            "",
            parameter.field.name,
            std::string(parameter.unit(units)),
            rangeText(parameter, units)};
}

std::size_t widthOf(const std::string& text)
{
    const auto count = std::ranges::count_if(text, [](char c) { return (c & 0xC0) != 0x80; }); // characters
    return static_cast<std::size_t>(count);
}

/// In columns, two blanks between them.
std::string tableText(const std::vector<Row>& rows)
{
    std::array<std::size_t, std::tuple_size_v<Row>> widths{};
    for (const Row& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i)
            widths.at(i) = std::max(widths.at(i), widthOf(row.at(i)));
    }
    std::string text;
    for (const Row& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i)
            line +=
                row.at(i) + std::string(widths.at(i) - widthOf(row.at(i)) + (widths.at(i) > 0 ? 2 : 0), ' ');
        text += std::string(trimmed(line)) + "\n";
    }
    return text;
}

std::string joined(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : " ") + word;
    return text;
}

bool hasWord(const Row& row, const std::string& shortName, const std::string& word)
{
    const auto has = [capitals = upperCase(word)](const std::string& text) {
        return upperCase(text).find(capitals) != std::string::npos;
    };
    return std::ranges::any_of(row, has) || has(shortName);
}

std::vector<Row> ownRows(const OwnParameters& table, const std::vector<std::string>& words)
{
    std::vector<Row> rows;
    for (const OwnParameterPointer& parameter : table.all()) {
        const Row row = rowOf(*parameter);
        const auto has = [&](const std::string& word) { return hasWord(row, parameter->shortName, word); };
        if (std::ranges::all_of(words, has))
            rows.push_back(row);
    }
    return rows;
}

std::vector<Row> standardRows(const std::string& words, UnitSystem units)
{
    std::vector<Row> rows;
    for (const StandardParameter& parameter : standardParameters()) {
        if (isFound(parameter, words, units))
            rows.push_back(rowOf(parameter, units));
    }
    return rows;
}

int printTried(const OwnParameter& parameter, const Tried& tried)
{
    if (!tried.number) {
        complain(tried.text);
        return exitStatus::failure;
    }
    if (tried.isOutside)
        complain("the value lies outside of the range of this parameter");
    return printOut(valueText(parameter, *tried.number) + "\n");
}

/// With a sign below the character that is wrong.
int refuse(const std::string& formula, const FormulaFault& fault)
{
    const std::string before(widthOf(formula.substr(0, fault.position)), ' ');
    complain("formula, at character " + std::to_string(before.size() + 1) + ": " + fault.text + "\n  " +
             formula + "\n  " + before + "^");
    return exitStatus::failure;
}

void addTable(CLI::App& command, std::string& path)
{
    addFile(command, "--file", path,
            "The table of parameters, instead of the one that the windows use; also one beside a design.");
}

void addUnits(CLI::App& command, UnitSystem& units)
{
    command.add_flag_callback(
        "--imperial", [&units] { units = UnitSystem::imperial; },
        "Parameters of the standard with the units of imperial countries.");
}

void addText(CLI::App& command, const char* name, const char* valueName, const char* description,
             std::string& text)
{
    addValue(command, name, valueName, description, [&text](const std::string& value) { text = value; });
}

void addDecimal(CLI::App& command, const char* name, const char* description, double& number)
{
    addValue(command, name, "NUMBER", description, [&number](const std::string& text) {
        const char* const end = text.data() + text.size();
        const auto [stop, error] = std::from_chars(text.data(), end, number);
        if (error != std::errc() || stop != end)
            throw UsageError("give a number, with a point for decimals");
    });
}

} // namespace

void ParametersListOptions::describe(CLI::App& command)
{
    command.add_flag("--standard", isStandard, "Print the parameters of the standard (SAE J1979) instead.");
    addUnits(command, units);
    addTable(command, filePath);
}

void ParametersSearchOptions::describe(CLI::App& command)
{
    addWord(command, "WORD", words, "All of them are in the name, request, unit, header, formula or group.");
    addUnits(command, units);
    addTable(command, filePath);
}

void ParametersImportOptions::describe(CLI::App& command)
{
    addWord(command, "FILE", path, "The CSV file, as phone programs exchange it.");
    command.add_flag("--replace", replaces, "A parameter of the same name gets the meaning of the file.");
    addTable(command, filePath);
}

void ParametersExportOptions::describe(CLI::App& command)
{
    addWord(command, "FILE", path, "The CSV file; - is standard output.");
    addTable(command, filePath);
}

void ParametersTryOptions::describe(CLI::App& command)
{
    command.add_option("NAME", name, "The name of a parameter, or its number.");
    command.add_option("REPLY", reply,
                       "What the adapter has answered, or the data bytes alone, in hexadecimal.");
    addText(command, "--formula", "TEXT", "Try this formula; then NAME is the beginning of REPLY.",
            parameter.formula);
    addText(command, "--request", "HEX", "The request that this reply answers.", parameter.request);
    addText(command, "--unit", "TEXT", "The unit behind the value.", parameter.unit);
    addTable(command, filePath);
}

void ParametersTryOptions::check() const
{
    if (parameter.formula.empty() ? reply.empty() : name.empty())
        throw UsageError("give the name of a parameter and a reply, or --formula and a reply");
    if (parameter.formula.empty() && !(parameter.request.empty() && parameter.unit.empty()))
        throw UsageError("--request and --unit go with --formula");
}

void ParametersAddOptions::describe(CLI::App& command)
{
    addWord(command, "NAME", parameter.name, "A name that no other one has.");
    addWord(command, "REQUEST", parameter.request, "What is sent, in hexadecimal, such as 221940.");
    addWord(
        command, "FORMULA", parameter.formula,
        "The value of the data bytes A, B, ... behind the repeated request, such as (A*256+B)/4; {A:3} is a "
        "bit of a byte.");
    addText(command, "--short-name", "TEXT", "A short name.", parameter.shortName);
    addText(command, "--header", "HEX", "The header that the request needs, such as 7E1.", parameter.header);
    addText(command, "--filter", "HEX", "The address of the unit whose replies are received, such as 7E9.",
            parameter.filter);
    addText(command, "--unit", "TEXT", "The unit of the value.", parameter.unit);
    addDecimal(command, "--min", "The smallest value to expect.", parameter.minimum);
    addDecimal(command, "--max", "The largest value to expect.", parameter.maximum);
    command.add_flag("--replace", replaces, "A parameter of the same name gets this meaning.");
    addTable(command, filePath);
}

void ParametersRemoveOptions::describe(CLI::App& command)
{
    addWord(command, "NAME", names, "Names of parameters, or their numbers.");
    addTable(command, filePath);
}

int runParametersList(const ParametersListOptions& options)
{
    if (options.isStandard)
        return printOut(tableText(standardRows({}, options.units)));
    const std::vector<Row> rows = ownRows(fileAt(options.filePath).load(), {});
    if (rows.empty())
        complain("there are no parameters of your own; zint-obd parameters import or add makes some");
    return printOut(tableText(rows));
}

int runParametersSearch(const ParametersSearchOptions& options)
{
    std::vector<Row> rows = ownRows(fileAt(options.filePath).load(), options.words);
    const std::vector<Row> standard = standardRows(joined(options.words), options.units);
    rows.insert(rows.end(), standard.begin(), standard.end());
    if (rows.empty()) {
        complain("no parameter has these words");
        return exitStatus::failure;
    }
    return printOut(tableText(rows));
}

int runParametersImport(const ParametersImportOptions& options)
{
    CsvImport import;
    readFile(options.path, [&](std::istream& stream) {
        fileAt(options.filePath).change([&](OwnParameters& table) {
            import = importCsv(stream, table, options.replaces ? SameName::replace : SameName::keep);
        });
    });
    for (const CsvLine& line : import.refused)
        complain(lineText(line));
    const int printed = printOut(importText(import) + "\n");
    return import.refused.empty() ? printed : exitStatus::failure;
}

int runParametersExport(const ParametersExportOptions& options)
{
    const OwnParameters table = fileAt(options.filePath).load();
    std::ostringstream text;
    const std::size_t filtered = exportCsv(text, table);
    if (filtered > 0)
        complain("the receive filters of " + std::to_string(filtered) +
                 " parameter(s) have no column and are left out");
    if (options.path == "-") {
        std::string lines = text.str();
        std::erase(lines, '\r');
        return printOut(lines);
    }
    replaceFile(options.path, [&](std::ostream& stream) { stream << byteOrderMark << text.str(); });
    return printOut(std::to_string(table.all().size()) + " parameter(s) exported\n");
}

int runParametersTry(const ParametersTryOptions& options)
{
    const bool isTyped = !options.parameter.formula.empty();
    const OwnParameter parameter =
        isTyped ? normalised(options.parameter) : *require(fileAt(options.filePath).load(), options.name);
    const Formula formula(parameter.formula);
    if (formula.fault())
        return refuse(parameter.formula, *formula.fault());
    const std::string reply = (isTyped ? options.name + " " : "") + joined(options.reply);
    return printTried(parameter, tryOut(parameter, reply));
}

int runParametersAdd(const ParametersAddOptions& options)
{
    StoredParameter stored;
    fileAt(options.filePath).change([&](OwnParameters& table) {
        OwnParameter parameter = options.parameter;
        if (const auto same = table.findName(parameter.name); same && options.replaces)
            parameter.number = same->number;
        stored = table.put(parameter);
    });
    if (stored.fault && stored.fault->field == ParameterField::formula)
        return refuse(std::string(trimmed(options.parameter.formula)),
                      {stored.fault->position, stored.fault->text});
    if (stored.fault)
        throw FileError(faultText(*stored.fault));
    return printOut(tableText({rowOf(*stored.parameter)}));
}

int runParametersRemove(const ParametersRemoveOptions& options)
{
    fileAt(options.filePath).change([&](OwnParameters& table) {
        for (const std::string& name : options.names)
            table.remove(require(table, name)->number);
    });
    return printOut(std::to_string(options.names.size()) + " parameter(s) removed\n");
}

} // namespace zint
