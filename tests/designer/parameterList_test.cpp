#include "catalogue/chooser.h"
#include "catalogue/pidCatalogue.h"
#include "designer/parameterList.h"
#include "parameters/carSupport.h"
#include "parameters/standardParameters.h"
#include "support/manualTime.h"
#include "support/scriptedAdapter.h"
#include "support/scriptedDialogs.h"
#include "support/scriptedPrompts.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zint {
namespace {

TEST(StandardParametersTest, AllFieldsHaveARequestAConversionAndAFrequencyOfTheChooser)
{
    for (const StandardParameter& parameter : standardParameters()) {
        const auto isOffered = [&](std::string_view choice) {
            return chooserNumber(choice) == parameter.frequency;
        };
        EXPECT_TRUE(std::ranges::any_of(PollChoices, isOffered)) << parameter.code;
        const DesignEntry event = eventFor(parameter, UnitSystem::imperial);
        EXPECT_EQ(standardConversion(event.conversion), parameter.conversion(UnitSystem::imperial));
        EXPECT_EQ(requestedParameter(event.code), parameter.pid);
        EXPECT_LT(parameter.minimum(UnitSystem::imperial), parameter.maximum(UnitSystem::imperial));
    }
    for (const char* other : {"", "01", "0", "0105zz", "010C0D", "0205", "ATRV"})
        EXPECT_FALSE(requestedParameter(other)) << other;
}

TEST(StandardParametersTest, AreFoundByWordsAndPolledAsFits)
{
    const auto found = [](std::string_view words) {
        std::string list;
        for (const StandardParameter& parameter : standardParameters()) {
            if (isFound(parameter, words, UnitSystem::imperial)) {
                const DesignEntry event = eventFor(parameter, UnitSystem::metric);
                list += event.code + " " + event.description + " " + std::to_string(event.conversion) + " " +
                        std::to_string(event.frequency) + "; ";
            }
        }
        return list;
    };
    EXPECT_EQ(found("  COOLANT 010 "), "0105 Coolant temperature 1050 15; ");
    EXPECT_EQ(found("oil °f"), "015C Engine oil temperature 1920 15; ") << "in the units that are shown";
    EXPECT_EQ(found("0151"), "0151 Fuel in use 1810 900; ");
    EXPECT_EQ(found("rail 6D B"),
              "016D Commanded fuel rail pressure B 2093 2; 016D Fuel rail pressure B 2094 2; "
              "016D Fuel rail temperature B 2095 15; ");
    EXPECT_GT(std::ranges::count(found(""), ';'), 200);
}

TEST(CarSupportTest, TellsWhatBitmapsCoverAndKeepsTheFullerOnesOfTheSameCar)
{
    const auto reading = [](std::initializer_list<std::uint8_t> ids) {
        UnitReading unit;
        unit.supported[0x01] = ids;
        return unit;
    };
    const auto marks = [](const CarSupport& car) {
        std::string text;
        for (const int pid : {0x00, 0x04, 0x05, 0x20, 0x21, 0x41, 0x42, 0xFF}) {
            const auto supported = isSupported(car, static_cast<std::uint8_t>(pid));
            text += !supported ? '?' : *supported ? '+' : '-';
        }
        return text + car.source;
    };
    CarSupport known;
    EXPECT_EQ(marks(known), "????????");
    learn(known,
          carSupport({{"7E8", reading({0x05, 0x20, 0x40, 0x42})}, {"7E9", reading({0x04})}}, "report"));
    EXPECT_EQ(marks(known), "++++--+?report") << "FF is in no bitmap";
    learn(known, carSupport({{"7E8", reading({0x04, 0x05, 0x20})}}, "check"));
    EXPECT_EQ(marks(known).substr(8), "report") << "the same car";
    learn(known, carSupport({}, "silence"));
    learn(known, carSupport({{"7E8", reading({0x05, 0x20})}}, "check"));
    EXPECT_EQ(marks(known), "+-++????check") << "another car";
}

struct ParameterListTest : testing::Test {
    TemporaryFolder folder;
    ScriptedAdapter adapter;
    ManualTimer timer;
    ScriptedPrompts prompts;
    ScriptedDialogs dialogs;
    ProgramValues values;
    Design design{.title = "Mine", .events = {{"0105", "Coolant Temp", 4, 10}, {"010C", "RPM", 5, 0}}};
    KeptDesigns kept{folder.path(), [](auto) { return "today"; }};
    ParametersFile file{folder.path()};
    std::optional<Designer> designer;
    std::optional<ParameterList> list;

    ParameterListTest()
    {
        file.change([](OwnParameters& own) {
            own.put({.name = "Oil temperature", .request = "221940", .formula = "A-40", .unit = "°C"});
        });
        open();
    }

    void open()
    {
        designer.emplace(AdapterLine{adapter, {}, timer}, design, prompts, dialogs, values, kept, file);
        designer->load();
        list.emplace(*designer, values);
    }

    std::string shown() const
    {
        std::string text;
        for (const ParameterListPanel::Row& row : list->panel().rows) {
            for (const std::string& cell : row.cells)
                text += cell + "|";
            text += " ";
        }
        return text;
    }
    std::string after(const std::string& words)
    {
        list->search(words);
        return shown();
    }
};

TEST_F(ParameterListTest, FindsFiltersAndSorts)
{
    EXPECT_EQ(after("coolant 010"), "0105|Coolant temperature|°C|Temperatures||yes| ");
    EXPECT_EQ(after("0c"), "010C|Engine speed|rpm|Engine and speed||not polled| ");
    designer->addEvents({{"0106", "Trim", 1, 1}});
    EXPECT_EQ(after("trim 0106"), "0106|Short term fuel trim, bank 1|%|Fuel||yes| "
                                  "0106|Short term fuel trim, bank 3|%|Fuel||| ");
    list->chooseUnits(UnitSystem::imperial);
    EXPECT_EQ(values.parmUnits, "imperial");
    EXPECT_EQ(ParameterList(*designer, values).panel().units, UnitSystem::imperial) << "remembered";
    list->sortBy(ParameterColumn::name);
    EXPECT_EQ(after("oil"),
              "015C|Engine oil temperature|°F|Temperatures||| 221940|Oil temperature|°C|Own||| ");
    list->sortBy(ParameterColumn::name);
    EXPECT_TRUE(shown().starts_with("221940"));
    list->chooseGroup(11);
    EXPECT_EQ(after(""), "221940|Oil temperature|°C|Own||| ");
    list->chooseGroup(0);

    list->showOnlySupported(true);
    EXPECT_FALSE(list->panel().isOnlySupported) << "nothing is known";
    values.carSupport = carSupport({{"7E8", {.supported = {{0x01, {0x04, 0x05}}}}}}, "support check");
    list->refresh();
    EXPECT_EQ(list->panel().supportHint, "What this car supports is known from the support check.");
    list->sortBy(ParameterColumn::supported);
    EXPECT_EQ(after("load 04"), "0104|Calculated engine load|%|Engine and speed|yes|| ");
    EXPECT_TRUE(after("fuel").ends_with("|Fuel|no|| ")) << "and what is not known stands in between";
    list->showOnlySupported(true);
    EXPECT_EQ(after("temperature"), "0105|Coolant temperature|°F|Temperatures|yes|yes| ");
}

TEST_F(ParameterListTest, AddsSeveralInOneStepAndNoMoreThanFit)
{
    after("221940");
    list->add({0});
    after("fuel rail pressure 6D");
    list->add({0, 2});
    EXPECT_EQ(list->panel().statusBox, "2 parameters added; the design has 4 polled events of 64");
    const GridRows& grid = designer->panel().obdGrid;
    EXPECT_EQ(grid.at(2), (DesignEntry{"221940", "Oil temperature", 10000, 15, 0}));
    EXPECT_EQ(grid.at(2).own->formula, "A-40");
    EXPECT_EQ(grid.at(4), (DesignEntry{"016D", "Commanded fuel rail pressure B", 2093, 2, 0}));
    EXPECT_EQ(designer->panel().statusBox, "2 events added");
    EXPECT_TRUE(after("6D fuel rail").find("Fuel rail pressure A|kPa|Fuel||| ") != std::string::npos)
        << "another field of an event's parameter";
    designer->undo();
    EXPECT_EQ(designer->panel().obdGrid.size(), 3U);
    list->add(std::vector<std::size_t>(62));
    EXPECT_EQ(designer->panel().obdGrid.size(), 65U) << "a row without a frequency takes no room";
    EXPECT_THROW(list->add({0}), TooManyEvents);
    EXPECT_EQ(designer->panel().obdGrid.size(), 65U);
}

TEST_F(ParameterListTest, ADesignCarriesItsDefinitionsToOthers)
{
    designer->useUnits(UnitSystem::metric);
    EXPECT_EQ(designer->panel().statusBox + values.parmUnits, "Metric units: 1 row changedmetric");
    after("221940");
    list->add({0});
    designer->setCell(2, GridColumn::conversion, "3>Celsius");
    EXPECT_FALSE(designer->panel().obdGrid[2].own);
    designer->undo();
    EXPECT_TRUE(designer->panel().obdGrid[2].own) << "looked up again";
    designer->saveWithDefinitions(true);
    dialogs.chosen = folder.path("car.obc");
    designer->saveAs();
    EXPECT_TRUE(fileExists(folder.path("car.parameters.json")));

    designer->disableAll();
    file.change([](OwnParameters& own) {
        own.put(
            {.number = 10000, .name = "Oil temperature", .request = "221941", .formula = "A", .unit = "°C"});
    });
    designer->takeParameters();
    EXPECT_EQ(designer->panel().obdGrid.at(1).code, "221941") << "follows its parameter";
    EXPECT_EQ(design.events.at(1).code, "221941") << "and so does what is polled";
    designer->undo();
    EXPECT_TRUE(designer->panel().obdGrid.at(1).isPolled()) << "a step of the user's";
    EXPECT_EQ(designer->panel().obdGrid.at(1).code, "221941");
    EXPECT_EQ(designer->panel().obdGrid.at(1).own->formula, "A");

    const TemporaryFolder elsewhere;
    file = ParametersFile(elsewhere.path());
    file.change([](OwnParameters& own) {
        own.put({.name = "Fan", .request = "22AA", .formula = "A"});
        own.put({.name = "Lamp", .request = "22BB", .formula = "A"});
    });
    for (const bool takes : {false, true}) {
        values.designToOpen = folder.path("car.obc");
        open();
        prompts.answer = takes;
        designer->tellLoadFailure();
        EXPECT_EQ(prompts.question, "Own Parameters\nThis design comes with own parameters that you do not "
                                    "have:\r\n   Oil temperature (221940)\r\n\r\nAdd them to yours?");
        if (!takes) {
            EXPECT_TRUE(prompts.takeMessage().starts_with("This design uses own parameters that are not "
                                                          "defined here:\r\n   10000: 221940 Oil temperature "
                                                          "(10000 is Fan here)\r\n"));
            designer->addEvents({eventFor(designer->ownParameters().find(10001))});
            designer->save();
            EXPECT_EQ(loadParameters(folder.path("car.parameters.json")).all().size(), 2U)
                << "what is not defined here stays";
        }
        EXPECT_TRUE(designer->panel().savesDefinitions) << "goes on carrying them";
    }
    EXPECT_EQ(cellText(designer->panel().obdGrid[1], GridColumn::conversion), "10002>Oil temperature, °C");
    EXPECT_TRUE(designer->panel().isModified);
    EXPECT_EQ(file.load().all().size(), 3U);
    designer->tellLoadFailure(); // once

    file.change([](OwnParameters& own) { own.put({.name = "Gear", .request = "221940", .formula = "B"}); });
    designer->takeParameters();
    designer->setCell(1, GridColumn::conversion, "10003>Gear");
    designer->saveWithDefinitions(false);
    const std::string beside = contents(folder.path("car.parameters.json"));
    designer->save();
    EXPECT_EQ(contents(folder.path("car.parameters.json")), beside) << "says nothing of 10003";
    designer->setCell(1, GridColumn::conversion, "10002>Oil temperature");
    TemporaryFolder::write(folder.path("car.parameters.json"), parametersJson(file.load()));
    file.change([](OwnParameters& own) {
        own.put({.number = 10002, .name = "Oil", .request = "221940", .formula = "A-41"});
    });
    designer->takeParameters();
    designer->save();
    EXPECT_EQ(loadParameters(folder.path("car.parameters.json")).find(10002)->formula, "A-41")
        << "never means something else than the design";
}

} // namespace
} // namespace zint
