#include "catalogue/designFile.h"
#include "designer/gridEditing.h"
#include "shared/runTimeError.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

std::string codesOf(const GridRows& rows)
{
    std::string codes;
    for (const DesignEntry& row : rows)
        codes += row.code;
    return codes;
}

TEST(GridEditingTest, CellsTakeWhatTheirEditorsHold)
{
    DesignEntry row{.code = "0105", .conversion = 3, .frequency = 10, .offset = 4};
    enterText(row, GridColumn::code, "0106");
    enterText(row, GridColumn::description, " a ");
    enterText(row, GridColumn::conversion, "4>Fahrenheit");
    enterText(row, GridColumn::frequency, "  15>about 5s");
    enterText(row, GridColumn::offset, " 007 ");
    EXPECT_EQ(row, (DesignEntry{"0105", " a ", 4, 15, 7}));
    EXPECT_EQ(cellText(row, GridColumn::conversion), "4>Fahrenheit");
    enterText(row, GridColumn::frequency, "25");
    for (const char* text : {"x", "", "3000000000"})
        EXPECT_THROW(enterText(row, GridColumn::offset, text), RunTimeError) << text;
    for (const char* text : {"-1", "99999999999>"})
        EXPECT_THROW(enterText(row, GridColumn::frequency, text), RunTimeError) << text;
    EXPECT_THROW(enterText(row, GridColumn::description, "a|b"), NotStorable);
    EXPECT_EQ(row, (DesignEntry{"0105", " a ", 4, 25, 7})) << "a refused text changes nothing";
    enterText(row, GridColumn::frequency, "often");
    EXPECT_EQ(row.frequency, 0);
    row.frequency = -3;
    enterText(row, GridColumn::frequency, "-3");
    EXPECT_EQ(row.frequency, -3) << "what a file brought may stay";
}

TEST(GridEditingTest, OffersWhatFitsTheRequestAndThenTheSameFamily)
{
    OwnParameters own;
    own.put({.number = 10003, .name = "Oil", .request = "22 1940", .formula = "A", .unit = "°C"});
    const auto choices = [&](const DesignEntry& row) {
        std::string text;
        for (const std::string& choice : conversionChoices(row, own))
            text += choice + "; ";
        return text;
    };
    EXPECT_EQ(choices({.code = "0105", .conversion = 4}),
              "4>Fahrenheit; 1050>Coolant temperature, °C; 5050>Coolant temperature, °F; 3>Celsius; ");
    EXPECT_EQ(choices({.code = "01 0c", .conversion = 5}), "5>RPM; 1120>Engine speed, rpm; ");
    EXPECT_EQ(choices({.code = "0114", .conversion = 1201}).substr(0, 91),
              "1201>Oxygen sensor trim, bank 1 sensor 1, %; 1200>Oxygen sensor voltage, bank 1 sensor 1, V");
    EXPECT_EQ(choices({.code = "221940", .conversion = 3}), "3>Celsius; 10003>Oil, °C; 4>Fahrenheit; ");
    for (const auto& [conversion, text] :
         {std::pair{10003, "10003>not defined here"}, {4000, "4000>not defined here"}, {99, "99>"}})
        EXPECT_EQ(cellText({.conversion = conversion}, GridColumn::conversion), text);
    EXPECT_EQ(cellText({.conversion = 10003, .own = own.find(10003)}, GridColumn::conversion),
              "10003>Oil, °C");

    std::string sizes;
    for (std::int32_t code = 0; code < 25; ++code)
        sizes += std::to_string(conversionChoices({.conversion = code}).size()) + " ";
    EXPECT_EQ(sizes, "25 1 1 2 2 1 3 3 3 4 4 4 4 25 1 1 1 4 2 2 25 1 4 4 4 ");
    EXPECT_EQ(conversionChoices({.conversion = 99}).size(), 26U) << "a file may hold any number";
}

TEST(GridEditingTest, TurnsAllConversionsIntoThoseOfOneSystemOfUnits)
{
    GridRows rows;
    for (const std::int32_t conversion : {1050, 1120, 3, 6, 9, 18, 17, 8, 10003, 4000})
        rows.push_back({.conversion = conversion});
    EXPECT_EQ(changeUnits(rows, UnitSystem::metric), 0U);
    EXPECT_EQ(changeUnits(rows, UnitSystem::imperial), 5U);
    std::string conversions;
    for (const DesignEntry& row : rows)
        conversions += std::to_string(row.conversion) + " ";
    EXPECT_EQ(conversions, "5050 1120 4 7 11 19 17 8 10003 4000 ");
    EXPECT_EQ(changeUnits(rows, UnitSystem::metric), 5U);
}

TEST(GridEditingTest, MovesAndSortsRows)
{
    GridRows rows;
    for (const auto& [code, frequency] : {std::pair{"c", 10}, {"A", 9}, {"b", 100}, {"d", 9}})
        rows.push_back({.code = code, .frequency = frequency});
    std::string orders;
    for (const auto& [from, to] : {std::pair{0U, 3U}, {3U, 0U}, {1U, 4U}}) {
        shiftRow(rows, from, to);
        orders += codesOf(rows) + " ";
    }
    EXPECT_EQ(orders, "Abcd dAbc dbcA ");
    orders.clear();
    for (const GridSorting by : {GridSorting{GridColumn::frequency, false}, // as numbers, and stable
                                 {GridColumn::frequency, true},
                                 {GridColumn::code, false}}) { // without regard to case
        sortRows(rows, by);
        orders += codesOf(rows) + " ";
    }
    EXPECT_EQ(orders, "dAcb bcdA Abcd ");
}

TEST(GridEditingTest, AddsRequestsOfTheCatalogueWithNameAndUnit)
{
    GridRows rows;
    EXPECT_EQ(requestChoices().size(), 27U) << "all that have a name";
    addRow(rows, requestChoices().at(15));
    EXPECT_EQ(rows[0], (DesignEntry{"0111", "Throttle Position", 1, 10, 0}));
    addRow(rows, "0111");
    EXPECT_EQ(rows[1], (DesignEntry{"0111", "", 0, 10, 0})) << "what is typed is taken as it is";
    EXPECT_THROW(addRow(rows, "a|b"), NotStorable);
    EXPECT_TRUE(isHexadecimal("22 f190ffffffff"));
    EXPECT_FALSE(isHexadecimal("zzz"));
}

} // namespace
} // namespace zint
