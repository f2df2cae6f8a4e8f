#include "designer/designGrid.h"
#include "shared/runTimeError.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

TEST(DesignGridTest, ACommitKeepsTheEnabledRows)
{
    Design design;
    loadDefaultDesign(design);
    design.entries[2].reserved1 = 7;
    DesignGrid grid = gridOf(design);
    ASSERT_EQ(grid.rows.size(), 31U);
    EXPECT_EQ(grid.rows[3].offset, "3");
    grid.title = "Car1";
    commit(grid, design);
    EXPECT_EQ(design.eventCount(), 22);
    EXPECT_TRUE(design.isCommitted());
    EXPECT_EQ(design.title(), "Car1");
    EXPECT_EQ(design.entries[1].code, "0104");
    EXPECT_EQ(design.entries[22].code, "011B");
    EXPECT_EQ(design.entries[2].reserved1, 7) << "stays with the place";
}

TEST(DesignGridTest, ACommitIsAllOrNothing)
{
    Design design;
    loadDefaultDesign(design);
    DesignGrid grid = gridOf(design);
    grid.title = "changed";
    grid.rows[10].offset = "soon";
    EXPECT_THROW(commit(grid, design), RunTimeError);
    grid.rows.assign(65, {.code = "0105", .frequency = 1});
    EXPECT_THROW(commit(grid, design), TooManyEvents);
    EXPECT_EQ(design.title(), "Default Settings");
    EXPECT_EQ(design.eventCount(), 31);
    EXPECT_EQ(design.entries[4].code, "0104");
    grid.rows.pop_back();
    EXPECT_NO_THROW(commit(grid, design));
    EXPECT_EQ(design.eventCount(), 64);
}

} // namespace
} // namespace zint
