#include "designer/designDifference.h"
#include "designer/designPrintout.h"
#include "designer/pollCost.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

TEST(DesignPrintoutTest, TellsFileCommandsAndSpeedAndEscapesTexts)
{
    const Design design{
        .title = "A & B", .events = {{"0105", "<hot>"}}, .extraCommands = "ATH1", .sampleSpeed = {}};
    EXPECT_TRUE(
        designPrintout(design, "a<b.obc", "Monday")
            .starts_with("<h2>Polling Design</h2><p><b>A &amp; B</b><br>a&lt;b.obc<br>Monday<br>"
                         "&nbsp;&nbsp;&nbsp;Sample Speed: Dynamic<br>&nbsp;&nbsp;&nbsp;Init Commands: "
                         "ATH1</p><table cellpadding=\"3\"><tr><th align=\"left\">Code</th>"));
    EXPECT_NE(designPrintout(design, "", "").find("<tr><td>0105</td><td>&lt;hot&gt;</td>"),
              std::string::npos);
}

TEST(DesignDifferenceTest, NamesWhatTellsTwoDesignsApart)
{
    const Design from{.events = {{"0105", "a"}, {"0106", "b"}, {"0107", "c"}}};
    Design design = from;
    EXPECT_EQ(differenceText(design, from), "the same rows");
    std::swap(design.events[0], design.events[1]);
    design.sampleSpeed.reset();
    EXPECT_EQ(differenceText(design, from), "another order; sample speed Auto");
    design.events.pop_back();
    design.extraCommands = "ATH1";
    EXPECT_EQ(differenceText(design, from), "without: 0107 c; init commands ATH1; sample speed Auto");
    EXPECT_EQ(differenceText(from, {.extraCommands = "ATH1"}),
              "other rows: 0105 a, 0106 b and 1 more; no init commands");
}

TEST(PollCostTest, TellsRequestsAndSecondsOfAPass)
{
    GridRows rows{{.frequency = 2}, {.frequency = 2}, {.frequency = 0}};
    EXPECT_EQ(pollCost(rows, Design::defaultSpeed, 9600), "About 1 request per pass, at most 0.22 s");
    rows[0].frequency = 4;
    EXPECT_EQ(pollCost(rows, {}, 38400, 0.05),
              "About 0.8 requests per pass, at most 0.08 s; as fast as the last run, 0.04 s");
    EXPECT_EQ(pollCost({{.frequency = 1800}}, std::chrono::milliseconds(1020), 9600),
              "Less than 0.1 requests per pass, less than 0.01 s");
}

} // namespace
} // namespace zint
