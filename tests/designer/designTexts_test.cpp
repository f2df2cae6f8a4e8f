#include "catalogue/conversion.h"
#include "catalogue/designFile.h"
#include "catalogue/ownParameter.h"
#include "designer/designDifference.h"
#include "designer/designPrintout.h"
#include "designer/initCommands.h"
#include "designer/listedNames.h"
#include "designer/loopOffsets.h"
#include "designer/pollCost.h"
#include "designer/sampleSpeed.h"
#include "shared/runTimeError.h"
#include "support/failure.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <regex>
#include <sstream>

namespace zint {
namespace {

TEST(DesignTextsTest, ThePrintoutTellsFileCommandsAndSpeedAndEscapesTexts)
{
    const Design design{
        .title = "A & B", .events = {{"0105", "<hot>"}}, .extraCommands = "ATH1", .sampleSpeed = {}};
    const std::string page = designPrintout(design, "a<b.obc", "Monday");
    EXPECT_TRUE(
        page.starts_with("<h2>Polling Design</h2><p><b>A &amp; B</b><br>a&lt;b.obc<br>Monday<br>"
                         "&nbsp;&nbsp;&nbsp;Sample Speed: Dynamic<br>&nbsp;&nbsp;&nbsp;Init Commands: "
                         "ATH1</p><table cellpadding=\"3\"><tr><th align=\"left\">Code</th>"));
    EXPECT_NE(page.find("<tr><td>0105</td><td>&lt;hot&gt;</td>"), std::string::npos);
}

TEST(DesignTextsTest, TheDifferenceNamesWhatTellsTwoDesignsApart)
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

TEST(DesignTextsTest, TheCostIsThatOfALoop)
{
    GridRows rows{{.frequency = 2}, {.frequency = 2}, {.frequency = 0}};
    EXPECT_EQ(pollCost(rows, Design::defaultSpeed, 9600), "About 1 request per pass, at most 0.22 s");
    rows[0].frequency = 4;
    EXPECT_EQ(pollCost(rows, {}, 38400, 0.05),
              "About 0.8 requests per pass, at most 0.08 s; as fast as the last run, 0.04 s");
    EXPECT_TRUE(pollCost({{.frequency = 11}}, {}, 9600).starts_with("Less than 0.1 requests per pass, at"));
    EXPECT_EQ(pollCost({{.frequency = 1800}}, std::chrono::milliseconds(1020), 9600),
              "Less than 0.1 requests per pass, less than 0.01 s");

    rows.clear();
    for (const char* code : {"010C", "010C", "010D", "0105", "0104", "0111", "010F", "010B", "2101", "0178"})
        rows.push_back({.code = code, .frequency = 1});
    EXPECT_EQ(pollCost(rows, Design::defaultSpeed, 9600),
              "About 10 requests per pass, at most 2.22 s (0.67 s with combined requests)")
        << "8 parameters in 2, and one of another mode";
    for (DesignEntry& row : rows)
        row.frequency = 2;
    rows[8].offset = 1; // never together with the others
    EXPECT_TRUE(
        pollCost(rows, Design::defaultSpeed, 9600).ends_with("1.11 s (0.33 s with combined requests)"));
    OwnParameter elsewhere{.header = "7E1"};
    rows = {{.code = "010C", .frequency = 1}, {.code = "010D", .frequency = 1}};
    rows[1].own = std::make_shared<OwnParameter>(elsewhere);
    EXPECT_TRUE(pollCost(rows, Design::defaultSpeed, 9600).ends_with("at most 0.44 s")) << "another unit";
    rows[1] = {.code = "0114", .conversion = 1200, .frequency = 1};
    rows.push_back({.code = "01 14", .conversion = 1201, .frequency = 1});
    EXPECT_EQ(pollCost(rows, Design::defaultSpeed, 9600),
              "About 2 requests per pass, at most 0.44 s (0.22 s with combined requests)");
}

TEST(DesignTextsTest, AQuestionListsTheFirstNames)
{
    EXPECT_EQ(listedNames({"a", "b"}), "\r\n   a\r\n   b");
    EXPECT_TRUE(listedNames(std::vector<std::string>(200, "x")).ends_with("   x\r\n   and 190 more"));
}

TEST(DesignTextsTest, InitCommandsThatInterfereAreRefused)
{
    EXPECT_EQ(checkInitCommands("at").commands, "AT");
    for (const char* taken : {"ATH1", "ATSH 81 10 F1;ATZ", ""})
        EXPECT_EQ(checkInitCommands(taken).complaint, "");
    EXPECT_EQ(checkInitCommands("SH 81 10 F1").complaint, "Error - commands must begin with AT");
    for (const char* command : {"ATZ", "ATE1", "ATL1", "ATD", "ATRV", "ATPC", "ATM0"})
        EXPECT_EQ(checkInitCommands(command).complaint,
                  std::string(command) + " would interfere will ability to recognize poll data");
    EXPECT_TRUE(checkInitCommands("ATH1;AT\xC3\xA4").complaint.ends_with(" letters, digits and signs only"));
}

TEST(DesignTextsTest, AHalfOfTheSlidersUnitGoesToTheEvenMultiple)
{
    std::string rounded;
    for (const int position : {200, 201, 202, 203, 206, 4, 1020})
        rounded += speedText(std::chrono::milliseconds(roundedSpeed(position))) + " ";
    EXPECT_EQ(rounded, "200ms 200ms 200ms 204ms 208ms 4ms 1020ms ");
}

TEST(LoopOffsetsTest, SpreadsTheEventsOfEachFrequency)
{
    Design design;
    for (const std::int32_t frequency : {2, 1, 2, 5, 2, 5, 5, 0})
        design.events.push_back({.frequency = frequency, .offset = 9});
    spreadOffsets(design);
    std::string offsets;
    for (const DesignEntry& event : design.events)
        offsets += std::to_string(event.offset);
    EXPECT_EQ(offsets, "00100439");
}

TEST(LoopOffsetsTest, TimelineListsTheLoops)
{
    const auto timeline = [](const std::vector<DesignEntry>& events) {
        return std::regex_replace(timelineText({.events = events}), std::regex("[-\r\n ]+(End Loop )?"), " ");
    };
    EXPECT_EQ(timeline({{"", "a", 0, 1, 0}, {"", "b", 0, 5, 4}}),
              " a 1 a b 2 a 3 a 4 a 5 a 6 a b 7 a 8 a 9 a 10 ");
    EXPECT_EQ(timeline({{"", "a", 0, 5, 2}}), " 1 2 3 a 4 5 6 7 8 a 9 10 11 12 13 ");
    EXPECT_TRUE(timelineText({.events = {{.frequency = 1}, {.frequency = 12}}})
                    .ends_with(" 11\r\n   \r\n---------- End Loop 12\r\n"));
    for (const std::vector<DesignEntry>& events : {std::vector<DesignEntry>(), {{.frequency = 1}, {}}})
        EXPECT_EQ(failureOf<RunTimeError>([&] { timelineText({.events = events}); }), "Division by zero");
    EXPECT_THROW(timelineText({.events = {{.frequency = 2000000000, .offset = 1}}}), std::length_error);
}

TEST(SamplesTest, ArePolledWholeAndWrittenAsTheyAre)
{
    for (const char* name : {"all-supported.obc", "engine-health.obc", "fuel-economy.obc"}) {
        const std::string path = std::string(ZINT_DATA_FOLDER "/") + name;
        const Design design = loadDesign(path);
        EXPECT_TRUE(design.isCommitted()) << name;
        for (const DesignEntry& event : design.events)
            EXPECT_NE(findConversion(event.conversion), nullptr) << event.code;
        std::ostringstream written;
        writeDesign(written, design);
        EXPECT_EQ(written.str(), contents(path)) << name;
    }
}

} // namespace
} // namespace zint
