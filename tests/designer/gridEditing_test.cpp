#include "designer/designFile.h"
#include "designer/gridEditing.h"
#include "designer/pollPreparation.h"
#include "designer/supportReply.h"
#include "shared/module1.h"
#include "shared/runTimeError.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zint {
namespace {

std::string codesOf(const DesignGrid& grid)
{
    std::string codes;
    for (const GridRow& row : grid.rows)
        codes += row.code;
    return codes;
}

TEST(GridEditingTest, CellsTakeWhatTheirEditorsHold)
{
    GridRow row{.code = "0105", .conversion = 3, .frequency = 10, .offset = 4};
    setCell(row, GridColumn::code, "0106");
    setCell(row, GridColumn::description, " a ");
    setCell(row, GridColumn::conversion, "4>Fahrenheit");
    setCell(row, GridColumn::frequency, "  15>about 5s");
    setCell(row, GridColumn::offset, " 007 ");
    EXPECT_EQ(row, (GridRow{"0105", " a ", 4, 15, 7}));
    EXPECT_EQ(cellText(row, GridColumn::conversion), "4>Fahrenheit");
    setCell(row, GridColumn::frequency, "25");
    EXPECT_EQ(cellText(row, GridColumn::frequency), "25");
    for (const auto& [column, text] : {std::pair{GridColumn::offset, "x"},
                                       {GridColumn::offset, ""},
                                       {GridColumn::frequency, "-1"},
                                       {GridColumn::frequency, "99999999999>"},
                                       {GridColumn::offset, "3000000000"}})
        EXPECT_THROW(setCell(row, column, text), RunTimeError) << text;
    EXPECT_THROW(setCell(row, GridColumn::description, "a|b"), NotStorable);
    EXPECT_EQ(row, (GridRow{"0105", " a ", 4, 25, 7})) << "a refused text changes nothing";
    setCell(row, GridColumn::frequency, "often");
    EXPECT_EQ(row.frequency, 0);
    row.frequency = -3;
    setCell(row, GridColumn::frequency, "-3");
    EXPECT_EQ(row.frequency, -3) << "what a file brought may stay";
}

TEST(GridEditingTest, OffersConversionsOfTheSameFamily)
{
    EXPECT_EQ(conversionChoices(4), (std::vector<std::string>{"4>Fahrenheit", "3>Celsius"}));
    EXPECT_EQ(conversionChoices(5), std::vector<std::string>{"5>RPM"});
    const auto all = conversionChoices(20);
    EXPECT_EQ(all.size(), 25U);
    EXPECT_EQ(all[0], "20>Display Hex");
    EXPECT_EQ(all[1], "0>No Conversion");
    EXPECT_EQ(conversionChoices(99).size(), 26U) << "a file may hold any number";
}

TEST(GridEditingTest, MovesAndSortsRows)
{
    DesignGrid grid;
    for (const auto& [code, frequency] : {std::pair{"c", 10}, {"A", 9}, {"b", 100}, {"d", 9}})
        grid.rows.push_back({.code = code, .frequency = frequency});
    moveRow(grid, 0, 3);
    EXPECT_EQ(codesOf(grid), "Abcd");
    moveRow(grid, 3, 0);
    EXPECT_EQ(codesOf(grid), "dAbc");
    moveRow(grid, 1, 4);
    EXPECT_EQ(codesOf(grid), "dbcA");
    sortRows(grid, GridColumn::frequency, false);
    EXPECT_EQ(codesOf(grid), "dAcb") << "as numbers, and stable";
    sortRows(grid, GridColumn::frequency, true);
    EXPECT_EQ(codesOf(grid), "bcdA");
    sortRows(grid, GridColumn::code, false);
    EXPECT_EQ(codesOf(grid), "Abcd") << "without regard to case";
}

TEST(GridEditingTest, StepsBackAndForth)
{
    DesignGrid grid;
    GridHistory history;
    for (const char* code : {"1", "2", "3"}) {
        history.remember(grid.rows);
        addRow(grid, code);
    }
    history.undo(grid.rows);
    history.undo(grid.rows);
    EXPECT_EQ(codesOf(grid), "1");
    history.redo(grid.rows);
    EXPECT_EQ(codesOf(grid), "12");
    history.remember(grid.rows);
    setAllFrequencies(grid, 0);
    EXPECT_FALSE(history.canRedo()) << "a new edit ends what was undone";
    history.undo(grid.rows);
    EXPECT_EQ(grid.rows[0].frequency, 10);
    for (int i = 0; i < 5; ++i)
        history.undo(grid.rows);
    EXPECT_TRUE(grid.rows.empty());
    EXPECT_FALSE(history.canUndo());
}

TEST(SupportReplyTest, LooksBitsUpInItsOwnOrder)
{
    const std::string_view reply = "41 00 BE 1F A8 13 \r41 00 00 00 00 00 \r\r>";
    ASSERT_TRUE(isSupportReply(reply));
    EXPECT_EQ(supportData(reply), "BE 1F A8 13 ");
    const std::string bits = hexToBits(supportData(reply));
    EXPECT_EQ(bits.size(), 32U);
    for (const char* supported : {"010C", "0105", "0120", "01", "01xx", "0904", "2101", "01FFFFFFFFFF"})
        EXPECT_FALSE(isUnsupported(supported, bits)) << supported;
    EXPECT_TRUE(isUnsupported("0104", bits));
    EXPECT_FALSE(isSupportReply("NO DATA\r\r>"));
    EXPECT_EQ(supportData("41 00 "), "");
}

TEST(PollPreparationTest, ChecksExtraCommandsAndRoundsTheSpeed)
{
    EXPECT_EQ(checkInitCommands("atsh 81 10 f1").commands, "ATSH 81 10 F1");
    EXPECT_EQ(checkInitCommands("ATH1").complaint, "");
    EXPECT_EQ(checkInitCommands("at").commands, "AT");
    EXPECT_EQ(checkInitCommands("").complaint, "");
    EXPECT_EQ(checkInitCommands("SH 81 10 F1").complaint, "Error - commands must begin with AT");
    for (const char* command : {"ATZ", "ATE1", "ATL1", "ATD", "ATRV", "ATPC", "ATM0"})
        EXPECT_EQ(checkInitCommands(command).complaint,
                  std::string(command) + " would interfere will ability to recognize poll data");
    for (const auto& [position, rounded] :
         {std::pair{200, 200}, {201, 200}, {202, 200}, {203, 204}, {206, 208}, {4, 4}, {1020, 1020}})
        EXPECT_EQ(roundedSpeed(position), rounded) << position;
}

} // namespace
} // namespace zint
