// Arbitrary tables of own parameters: what is read is written so that it reads the same, and a design takes
// it over. Input: the JSON.

#include "fuzz/fuzzInput.h"
#include "parameters/designParameters.h"
#include "parameters/parametersFile.h"
#include "shared/fileError.h"

namespace zint {
namespace {

/// Nothing for what is no table.
std::optional<OwnParameters> read(std::string_view text)
{
    try {
        return readParametersJson(text);
    } catch (const FileError& error) {
        require(*error.what() != 0, "it is told what is wrong");
        return std::nullopt;
    }
}

void takeOver(const OwnParameters& definitions)
{
    Design design;
    for (const OwnParameterPointer& parameter : definitions.all())
        design.events.push_back({.code = parameter->request, .conversion = parameter->number});
    OwnParameters table;
    table.put({.name = "Oil", .request = "2210", .formula = "A"});
    const TakenDefinitions taken = takeDefinitions(design, definitions, table);
    renumber(design, taken.numbers);
    require(define(design, table).isNone(), "a design has all definitions that were taken over");
    require(takeDefinitions(design, definitionsOf(design), table).added.empty(),
            "nothing is taken over twice");
}

} // namespace

void fuzz(std::string_view input)
{
    const auto table = read(input);
    if (!table)
        return;
    const std::string once = parametersJson(*table);
    const auto again = read(once);
    require(again.has_value(), "what was written can be read");
    require(parametersJson(*again) == once, "what was written comes back as it was");
    takeOver(*table);
}

} // namespace zint
