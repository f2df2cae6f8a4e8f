#include "designer/designGrid.h"
#include "designer/designPrintout.h"

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
    EXPECT_EQ(grid.rows[3].offset, 3);
    grid.title = "Car1";
    commit(grid, design);
    EXPECT_EQ(design.eventCount(), 22);
    EXPECT_TRUE(design.isCommitted());
    EXPECT_EQ(design.title(), "Car1");
    EXPECT_EQ(design.entries[1].code, "0104");
    EXPECT_EQ(design.entries[22].code, "011B");
    EXPECT_EQ(design.entries[2].reserved1, 7) << "stays with the place";
}

TEST(DesignPrintoutTest, ListsTheRowsAsText)
{
    const DesignGrid grid{.title = "A & B", .rows = {{"0105", "<hot>", 3, 15, 2}}};
    const std::string html = designPrintout(grid, 100, "Monday");
    for (const char* part :
         {"<h2>Polling Design</h2>", "<b>A &amp; B</b><br>Monday<br>", ";Sample Speed: 100ms<",
          "<td>0105</td><td>&lt;hot&gt;</td><td>3&gt;Celsius</td><td>15</td><td>2</td>"})
        EXPECT_NE(html.find(part), std::string::npos) << part << " in " << html;
    EXPECT_NE(designPrintout(grid, -1, "").find("Sample Speed: Dynamic<"), std::string::npos);
}

} // namespace
} // namespace zint
