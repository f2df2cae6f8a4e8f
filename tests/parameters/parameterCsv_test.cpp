#include "parameters/parameterCsv.h"
#include "shared/textFile.h"

#include <gtest/gtest.h>

#include <sstream>

namespace zint {
namespace {

CsvImport imported(const std::string& text, OwnParameters& table, SameName sameName = SameName::keep)
{
    std::istringstream stream(text);
    return importCsv(stream, table, sameName);
}

std::string refusals(const CsvImport& import)
{
    std::string text;
    for (const CsvLine& line : import.refused)
        text += lineText(line) + "\n";
    return text;
}

TEST(ParameterCsvTest, TakesFilesAsTheyAreUsuallyWritten)
{
    const std::tuple<const char*, std::size_t, const char*> rows[] = {
        {"gearbox.csv", 20, ""},
        {"diesel.csv", 19,
         "line 21, \"Formelfehler\": formula, at character 1: there is no function LOOKUP\n"},
        {"electric.csv", 20, ""},
    };
    OwnParameters table;
    for (const auto& [name, count, refused] : rows) {
        const CsvImport import = imported(contentOf(std::string(ZINT_PARAMETERS "/") + name), table);
        EXPECT_EQ(import.added.size(), count) << name;
        EXPECT_EQ(refusals(import), refused);
    }
    const auto taken = [&](const char* name) {
        OwnParameter parameter = *table.findName(name);
        parameter.number = 0;
        return parameter;
    };
    EXPECT_EQ(taken("Steigung"), (OwnParameter{.name = "Steigung",
                                               .shortName = "SLOPE",
                                               .request = "224A51",
                                               .header = "7E0",
                                               .formula = "MAX(SIGNED(A)*0.5,-45)",
                                               .unit = "°",
                                               .minimum = -45,
                                               .maximum = 63.5}));
    EXPECT_EQ(taken("Line Pressure, Wanted").formula, "(A*256+B)*0.25");
    EXPECT_EQ(taken("Cell Spread").formula, "max(A,C)-min(A,C)");
    EXPECT_EQ(taken("Contactor \"main\"").header, "18DA10F1");
    EXPECT_EQ(taken("Heat Pump Power").maximum, 12750);
    EXPECT_EQ(taken("Abgastemperatur nach Kat").header, "");

    OwnParameters numbers;
    imported("Name,PID,Formula,Min,Max\na,2210,A,\"\xE2\x88\x92"
             "1,5\",\"1,000\"\n",
             numbers);
    EXPECT_EQ(numbers.all().at(0)->minimum, -1.5);
    EXPECT_EQ(numbers.all().at(0)->maximum, 1000);

    for (const char* const name : {"# of gears", "//", "\xEF\xBB\xBF"}) // no comments, and no mark of a file
        table.put({.name = name, .request = "2210", .formula = "A"});
    std::ostringstream stream;
    EXPECT_EQ(exportCsv(stream, table), 0U);
    OwnParameters again;
    EXPECT_EQ(imported(stream.str(), again).added.size(), table.all().size());
    for (std::size_t i = 0; i < table.all().size(); ++i)
        EXPECT_TRUE(isSameButNumber(*again.all().at(i), *table.all()[i])) << table.all()[i]->name;
}

TEST(ParameterCsvTest, NamesEachLineThatItCanNotTake)
{
    constexpr const char* head = "Name,ShortName,ModeAndPID,Equation,Min Value,Max Value,Units,Header\n";
    const std::pair<std::string, const char*> rows[] = {
        {std::string(head) +
             "a,,2210,VAL(A),0,1,,\nb,,2210,A,0,1,,\n\"c,,2210,A\nd,,22,\"A\"x,0,1,,\nb,,2211,A,0,1,,\n",
         "line 2, \"a\": formula, at character 1: there is no function VAL\n"
         "line 4: a quotation mark is not closed\n"
         "line 5: text follows a closing quotation mark; within quoted text a quotation mark is doubled\n"
         "line 6, \"b\": line 3 has the same name\n"},
        {std::string(head) +
             "a,,2210,A,zero,1,,\n,,2210,A,0,1,,\nc,,221,A,0,1,,\nd,,2210,A,0,1,,7E0,x,y\ne\n",
         "line 2, \"a\": \"zero\" is no number\n"
         "line 3: name, at character 1: the name is missing\n"
         "line 4, \"c\": request, at character 4: a digit is missing: each byte of the request has two\n"
         "line 5, \"d\": it has more columns than the head; texts with commas need quotation marks\n"
         "line 6, \"e\": request, at character 1: the request is missing\n"},
        {"Name,Units\na,b\n", "line 1: the head has no column ModeAndPID\n"},
        {std::string("\0\0\0", 3), "line 1: the file is no text\n"},
        {"hello\n", "line 1, \"hello\": request, at character 1: the request is missing\n"},
        {"", ""},
        {"sep=;\n#1;O;2210;A/2,5;0;1,5;C;7E1\n", ""}, // without a head
    };
    for (const auto& [text, refused] : rows) {
        OwnParameters table;
        EXPECT_EQ(refusals(imported(text, table)), refused) << text;
    }
}

TEST(ParameterCsvTest, AnotherMeaningOfANameIsTakenOnRequestAlone)
{
    OwnParameters table;
    table.put({.name = "Oil", .request = "2210", .filter = "7E9", .formula = "A"});
    const std::string text =
        "Name,Colour,ModeAndPID,Equation\nOIL,,2210,A*2\nNew,red,2211,A\nnew,,2211,A*3\n";
    EXPECT_EQ(importText(imported(text, table)), "1 parameter added, 2 refused");
    EXPECT_EQ(table.findName("oil")->formula, "A");
    const CsvImport import = imported(text, table, SameName::replace);
    EXPECT_EQ(importText(import), "0 parameters added, 1 replaced, 1 already there, 1 refused");
    EXPECT_EQ(
        *table.find(10000),
        (OwnParameter{.number = 10000, .name = "OIL", .request = "2210", .filter = "7E9", .formula = "A*2"}));
    std::ostringstream stream;
    EXPECT_EQ(exportCsv(stream, table), 1U) << "a filter has no column";
}

} // namespace
} // namespace zint
