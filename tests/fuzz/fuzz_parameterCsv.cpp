// Arbitrary files of own parameters: each line is told once, what is taken is as the table keeps it, and what
// is exported comes back as it was. Input: the text.

#include "fuzz/fuzzInput.h"
#include "parameters/parameterCsv.h"

#include <sstream>

namespace zint {
namespace {

CsvImport imported(const std::string& text, OwnParameters& table, SameName sameName)
{
    std::istringstream stream(text);
    return importCsv(stream, table, sameName);
}

std::string exported(const OwnParameters& table)
{
    std::ostringstream stream;
    exportCsv(stream, table);
    return stream.str();
}

} // namespace

void fuzz(std::string_view input)
{
    const std::string text(input);
    OwnParameters table;
    const CsvImport import = imported(text, table, SameName::keep);
    require(import.added.size() == table.all().size() && import.replaced.empty(),
            "an empty table takes new ones alone");
    for (const OwnParameterPointer& parameter : table.all())
        require(!table.faultOf(*parameter) && normalised(*parameter) == *parameter,
                "the table keeps what is right");
    for (const CsvLine& line : import.refused)
        require(line.number > 0 && !line.why.empty(), "a line is told with its number and why");
    const CsvImport twice = imported(text, table, SameName::replace);
    require(twice.added.empty() && twice.lines() == import.lines(), "a file that is read twice adds nothing");

    const std::string once = exported(table);
    OwnParameters again;
    const CsvImport back = imported(once, again, SameName::keep);
    require(back.refused.empty() && back.added.size() == table.all().size(), "what is exported is taken");
    require(exported(again) == once, "what is exported comes back as it was");
}

} // namespace zint
