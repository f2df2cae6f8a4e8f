#include "parameters/designParameters.h"
#include "parameters/parametersFile.h"
#include "shared/fileError.h"
#include "shared/fileLock.h"
#include "support/designOf.h"
#include "support/failure.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <functional>

namespace zint {
namespace {

const OwnParameter oilHeat{
    .name = "Oil", .request = "221940", .header = "7E1", .formula = "A-40", .unit = "C"};

OwnParameter named(const std::string& name, const std::string& formula = "A")
{
    return {.name = name, .request = "221941", .formula = formula};
}

TEST(OwnParametersTest, KeepsTextsInOneFormAndTellsWhatIsWrong)
{
    OwnParameters table;
    const auto stored = table.put({.name = " \xD6l ", // Windows-1252
                                   .request = "0x22 19 4a",
                                   .header = "da 10 f1",
                                   .formula = " a ",
                                   .minimum = 5,
                                   .maximum = 5});
    ASSERT_TRUE(stored.parameter);
    EXPECT_EQ(*stored.parameter,
              (OwnParameter{
                  .number = 10000, .name = "Öl", .request = "22194A", .header = "DA10F1", .formula = "a"}));
    using Spoil = std::function<void(OwnParameter&)>;
    const std::pair<Spoil, const char*> rows[] = {
        {[](auto& p) { p.name = " "; }, "name, at character 1: the name is missing"},
        {[](auto& p) { p.name = "Öl"; }, "name, at character 1: there is another parameter of this name"},
        {[](auto& p) { p.name = "a|b"; }, "name, at character 2: \"|\" can't stand in a design"},
        {[](auto& p) { p.unit = "a\nb"; }, "unit, at character 2: this is no text"},
        {[](auto& p) { p.request = ""; }, "request, at character 1: the request is missing"},
        {[](auto& p) { p.request = "22194"; },
         "request, at character 6: a digit is missing: each byte of the request has two"},
        {[](auto& p) { p.request = "22G9"; },
         "request, at character 3: the request must be hexadecimal, such as 221940"},
        {[](auto& p) { p.request = "2219401122334455"; },
         "request, at character 15: a request has at most 7 bytes"},
        {[](auto& p) { p.header = "7E"; }, "header, at character 3: it has 3, 6 or 8 digits, or none"},
        {[](auto& p) { p.filter = "7E8;ATZ"; },
         "filter, at character 4: it must be hexadecimal, such as 7E0"},
        {[](auto& p) { p.formula = "A+VAL(1)"; }, "formula, at character 3: there is no function VAL"},
        {[](auto& p) { p.maximum = std::numeric_limits<double>::infinity(); }, "the range has no end"},
    };
    for (const auto& [spoil, text] : rows) {
        OwnParameter parameter = oilHeat;
        spoil(parameter);
        const auto refused = table.put(parameter);
        ASSERT_TRUE(refused.fault) << text;
        EXPECT_EQ(faultText(*refused.fault), text);
    }
    EXPECT_EQ(table.all().size(), 1U);
}

TEST(OwnParametersTest, GivesNoNumberTwiceAlsoAfterTheFile)
{
    OwnParameters table;
    table.put(named("a"));
    table.put(named("b"));
    EXPECT_TRUE(table.remove(10001));
    table = readParametersJson(parametersJson(table));
    EXPECT_EQ(table.put(named("c")).parameter->number, 10002);
    OwnParameter changed = *table.find(10000);
    changed.name = "A"; // its own, in capitals
    EXPECT_EQ(table.put(changed).parameter->number, 10000);
    EXPECT_EQ(table.findName("a")->name, "A");
    EXPECT_EQ(table.all().size(), 2U);

    table.put({.number = OwnParameters::lastNumber, .name = "last", .request = "2210", .formula = "A"});
    EXPECT_EQ(readParametersJson(parametersJson(table)).put(named("d")).fault->text,
              "there is no such number");
}

TEST(OwnParametersTest, TheFileKeepsWhatItDoesNotKnow)
{
    const std::string text = R"({
  "schema": 1,
  "next": 10007,
  "parameters": [
    {
      "number": 10003,
      "name": "Öl",
      "request": "221940",
      "filter": "7E9",
      "formula": "A-40",
      "minimum": -40.5,
      "maximum": 215.0,
      "colour": [
        "red"
      ]
    }
  ]
}
)";
    EXPECT_EQ(parametersJson(readParametersJson(text)), text);
}

TEST(OwnParametersTest, ABrokenFileIsToldAndNeverOverwritten)
{
    const TemporaryFolder folder;
    const ParametersFile file(folder.path());
    const std::string entry = R"({"number":10000,"name":"a","request":"2210","formula":"A"})";
    const std::pair<std::string, const char*> rows[] = {
        {"", "line 1 is no JSON"},
        {"{\"schema\": 1,\n\"parameters\": [\n}", "line 3 is no JSON"},
        {"[]", "it is no table of parameters"},
        {std::string(100000, '['), "it is no table of parameters"},
        {R"({"schema":2,"parameters":[]})", "it was written by a newer version of this program"},
        {R"({"schema":1,"next":"x","parameters":[]})", "\"next\" must be a number from 10000 to 2000000001"},
        {R"({"schema":1,"parameters":[1]})", "parameter 1: it must stand in braces"},
        {R"({"schema":1,"parameters":[{}]})",
         "parameter 1: \"number\" must be a number from 10000 to 2000000000"},
        {R"({"schema":1,"parameters":[{"number":10000,"name":1}]})", "parameter 1: \"name\" must be a text"},
        {R"({"schema":1,"parameters":[{"number":10000,"maximum":"1"}]})",
         "parameter 1: \"maximum\" must be a number"},
        {R"({"schema":1,"parameters":[)" + entry + "," + entry + "]}",
         "parameter 2: another one has the number 10000"},
        {R"({"schema":1,"parameters":[{"number":10000,"name":"a","request":"2210","formula":"A+"}]})",
         "parameter 1: \"a\": formula, at character 3: a value is missing at the end"},
    };
    for (const auto& [text, why] : rows) {
        TemporaryFolder::write(file.path(), text);
        const auto add = [&] { file.change([](OwnParameters& table) { table.put(oilHeat); }); };
        EXPECT_EQ(failureOf<FileError>(add), "\"" + file.path() + "\": " + why);
        EXPECT_EQ(contents(file.path()), text);
    }
}

TEST(OwnParametersTest, TwoProgramsLoseNothingOfEachOther)
{
    const TemporaryFolder folder;
    const std::string data = folder.path("not/yet/there");
    const ParametersFile one(data);
    const ParametersFile other(data);
    EXPECT_TRUE(one.load().all().empty());
    one.change([](OwnParameters& table) { table.put(named("a")); });
    EXPECT_EQ(other.change([](OwnParameters& table) { table.put(named("b")); }).all().size(), 2U);
    EXPECT_EQ(one.change([](OwnParameters& table) { table.remove(10000); }).all().size(), 1U);
    EXPECT_EQ(other.load().put(named("c")).parameter->number, 10002);
    FileLock lock;
    ASSERT_TRUE(lock.take(one.path()));
    EXPECT_EQ(failureOf<FileError>([&] { other.change([](OwnParameters&) {}); }),
              "\"" + other.path() + "\" is being changed by another program; try again later");
}

TEST(DesignParametersTest, EventsGetTheirDefinitionsOrTellWhichAreMissing)
{
    OwnParameters table;
    table.put(oilHeat);
    Design design = designOf({{.code = "010C", .conversion = 5, .own = table.find(10000)},
                              {.code = "22 19 401", .conversion = 10000},
                              {.code = "221941", .conversion = 10000},
                              {.code = "2210", .conversion = 10009},
                              {.code = "2211", .conversion = 10009},
                              {.code = "22194055", .conversion = 10000}});
    EXPECT_EQ(define(design, table), (Undefined{.missing = {10009}, .differing = {2, 5}}));
    for (std::size_t i = 0; i < design.events.size(); ++i)
        EXPECT_EQ(design.events[i].own != nullptr, i == 1) << i;
    EXPECT_EQ(definitionsPath("/x.obc/My Car.OBC"), "/x.obc/My Car.parameters.json");
    EXPECT_EQ(definitionsPath("/x/.obc"), "/x/.obc.parameters.json");
    EXPECT_EQ(definitionsOf(design).all().size(), 1U);
}

TEST(DesignParametersTest, DefinitionsFindTheirPlaceInAnotherTable)
{
    OwnParameters definitions; // 10000 Oil, 10001 Same, 10002 Clash, 10003 unused, and the last one
    for (const OwnParameter& parameter : {oilHeat, named("Same"), named("Clash", "A*2"), named("Unused")})
        definitions.put(parameter);
    definitions.put({.number = OwnParameters::lastNumber, .name = "Far", .request = "22", .formula = "A"});
    Design design = designOf({{.code = "221940", .conversion = 10000},
                              {.code = "221941", .conversion = 10001},
                              {.code = "221941", .conversion = 10002},
                              {.code = "221941", .conversion = 10002},
                              {.code = "2299", .conversion = 10077},
                              {.code = "2299", .conversion = 10003}, // was numbered by another table
                              {.code = "22", .conversion = OwnParameters::lastNumber}});
    OwnParameters table; // 10000 Clash, 10001 gone, 10002 Same
    for (const char* const name : {"Clash", "Gone", "Same"})
        table.put(named(name));
    table.remove(10001);
    const TakenDefinitions taken = takeDefinitions(design, definitions, table);
    EXPECT_EQ(taken.numbers,
              (std::map<std::int32_t, std::int32_t>{
                  {10000, 10003}, {10001, 10002}, {10002, 10004}, {OwnParameters::lastNumber, 10005}}));
    ASSERT_EQ(taken.added.size(), 3U);
    EXPECT_EQ(taken.added[0]->name, "Oil");
    EXPECT_EQ(taken.added[1]->name, "Clash 2");
    EXPECT_EQ(takeDefinitions(design, definitions, table).added.size(), 0U) << "opened once more";
    renumber(design, taken.numbers);
    EXPECT_EQ(define(design, table).missing, std::vector<std::int32_t>{10077});
    EXPECT_EQ(design.events[2].own->formula, "A*2");
}

} // namespace
} // namespace zint
