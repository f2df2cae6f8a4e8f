#include "codes/canCodes.h"
#include "codes/codesReport.h"
#include "codes/readiness.h"
#include "codes/troubleCodes.h"
#include "shared/fileError.h"
#include "shared/module1.h"
#include "support/scriptedDialogs.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

TEST(TroubleCodesTest, ReadsTheFirstLineOfTheReply)
{
    const struct {
        std::string_view reply;
        std::vector<std::string> codes;
        int listed; ///< of these, what is a code of the vehicle
        int stored; ///< in all lines
    } rows[] = {
        {"43 01 33 03 01 C1 23 \r43 04 20 00 00 00 00 \r>", {"P0133", "P0301", "U0123"}, 3, 4},
        {"43 00 01 00 10 00 00 \r\r>", {"P0001", "P0010"}, 2, 2}, // only the first digit is 0
        {"43 c1 23 01 33 00 00 \r\r>", {"P0133"}, 1, 2},          // lower case is no digit
        {"43 0? 3< ?3 01 00 00 \r\r>", {"P0?3<"}, 0, 0},          // garbage inside a code is copied
        {"7F 01 33 00 00 \r\r>", {"P0133"}, 0, 0},                // a refusal
    };
    for (const auto& [reply, codes, listed, stored] : rows) {
        EXPECT_EQ(storedCodes(reply), codes) << reply;
        EXPECT_EQ(listedCodeCount(reply), listed) << reply;
        EXPECT_EQ(storedCodeCount(reply), stored) << reply;
    }
    std::string prefixes;
    for (const char digit : std::string_view("0123456789ABCDEF"))
        prefixes += storedCodes(std::string("43 ") + digit + "1 23 \r\r>").at(0).substr(0, 2);
    EXPECT_EQ(prefixes, "P0P1P2P3C0C1C2C3B0B1B2B3U0U1U2U3");
}

/// The codes of a reply in the CAN layout, those of each unit before "|", "+" and the number of codes that
/// could not be read; "older" for another layout.
std::string inCanLayout(const std::string& reply, int reported, const std::string& padding)
{
    const auto units =
        canCodes(reply + "\r\r>", "41 01 8" + std::to_string(reported) + " 07 65 04 " + padding + "\r\r>");
    std::string text = units ? "" : "older";
    for (const CanUnit& unit : units.value_or(std::vector<CanUnit>())) {
        for (const std::string& code : unit.codes)
            text += code + " ";
        text += (unit.unreadCodes > 0 ? "+" + std::to_string(unit.unreadCodes) : "") + "|";
    }
    return text;
}

TEST(CanCodesTest, TellsTheLayoutsApartAndReadsThatOfCan)
{
    const struct {
        const char* reply;
        int reported;
        const char* codes;
        const char* padding = ""; ///< behind the reply to "0101"
    } rows[] = {
        {"43 01 33 03 00 00 00 ", 2, "older"}, // as if one code, padded
        {"43 01 01 33 AA AA AA ", 2, "older"}, // another number than was reported
        {"43 02 01 33 03 01 35 ", 2, "older"}, // the vehicle miscounts
        {"43 03 01 C1 23 00 00 ", 2, "older", "00 "},
        {"43 01 33 01 00 00 00 \r43 01 35 00 00 00 00 ", 1, "older"}, // two control units
        {"43 01 33 03 \r43 02 01 00 00 00 00 ", 1, "older"},          // bytes are missing
        {"43 01 01 33 00 ", 1, "older"},                              // a byte too much
        {"43 00 ", 1, "|"},
        {"43 02 01 33 03 01 ", 2, "P0133 P0301 |"},
        {"7F 03 78 \r43 02 04 20 00 00 \r43 00 ", 1, "P0420 ||"},
        {"43 01 03 00 00 00 00 ", 1, "P0300 |", "00 "}, // shown with their padding
        {"43 01 01 33 AA AA AA ", 1, "P0133 |"},
        {"00A \r0: 43 04 01 33 03 01 \r1: C1 00 04 20 00 00 00 ", 4, "P0133 P0301 U0100 P0420 |"},
        {"0: 43 07 01 33 03 01 \r2: 36 01 37 AA AA AA AA ", 7, "P0133 P0301 +5|"},
        {"0: 43 07 01 33 03 \r1: C1 00 04 20 00 35 01 ", 7, "P0133 +6|"},
        {"0: 43 07 01 33 03 01 \r1: C1 00 04 20 <DATA ERROR\r2: 36 01 37 AA AA AA AA ", 7, "P0133 P0301 +5|"},
        {"0: 43 07 01 33 03 01 \r1: C1 00 04 20 \r2: 36 01 37 AA AA AA AA ", 7,
         "P0133 P0301 U0100 P0420 +3|"},
        {"0: 43 04 01 33 03 01 \r43 01 04 20 \r1: C1 00 04 20 00 00 00 ", 4,
         "P0133 P0301 U0100 P0420 |P0420 |"},
        {"0: 43 03 01 33 03 01 \r0: 43 03 01 35 03 02 \r1: C1 00 00 00 00 00 00 \r1: C1 23 00 00 00 00 00 ",
         3, "P0133 P0301 +1|P0135 P0302 +1|"}}; // whose is the frame?
    for (const auto& [reply, reported, codes, padding] : rows)
        EXPECT_EQ(inCanLayout(reply, reported, padding), codes) << reply;

    std::string longest = "0: 43 FF 01 01 01 01 "; // frame numbers begin anew behind F
    for (int frame = 1; frame <= 72; ++frame)
        longest += "\r" + hexText(frame % 16, 1) + ": 01 01 01 01 01 01 01 ";
    EXPECT_EQ(canCodes(longest, {})->front().codes.size(), 254U);
}

/// The first letter of each monitor's result: OK, Incomplete, Unsupported or input error.
std::string inLetters(std::string_view reply)
{
    std::string letters;
    for (const std::string& text : readinessReport(reply)) {
        const auto test = text.find(" Test ");
        letters += test == std::string::npos ? text.at(text.find(" input error") + 1) : text.at(test + 6);
    }
    return letters;
}

TEST(ReadinessTest, TellsHowFarEachTestIs)
{
    const std::pair<std::string_view, std::string_view> rows[] = {
        {"41 01 00 00 00 00 \r\r>", "iiiiiiiiiii"}, // nothing supported is an input error
        {"41 01 00 11 01 01 \r\r>", "IUUIUUUUUUU"}, // each bit of its own
        {"41 01 00 22 02 02 \r\r>", "UIUUIUUUUUU"}, {"41 01 00 44 04 04 \r\r>", "UUIUUIUUUUU"},
        {"41 01 00 01 08 08 \r\r>", "OUUUUUIUUUU"}, {"41 01 00 01 10 10 \r\r>", "OUUUUUUIUUU"},
        {"41 01 00 01 20 20 \r\r>", "OUUUUUUUIUU"}, {"41 01 00 01 40 40 \r\r>", "OUUUUUUUUIU"},
        {"41 01 00 01 80 80 \r\r>", "OUUUUUUUUUI"}, {"41 01 00 0? 65 00\r\r>", "iiiOUOUUOOU"},
        {"41 01 00 07 G5 00 \r\r>", "OOOiiiiiiii"}, {"41 01 00 07 65 \r\r>", "OOOiiiiiiii"},
        {"41 01 00 07 ff 00 \r\r>", "OOOOOOOOOOO"}, // lower case is understood
    };
    for (const auto& [reply, letters] : rows)
        EXPECT_EQ(inLetters(reply), letters) << reply;
}

TEST(CodesReportTest, TellsWhatWasReadAndIsSavedUnderItsDate)
{
    const TemporaryFolder folder;
    ScriptedDialogs dialogs;
    ProgramValues values;
    CodesReading found{.isLit = true, .reportedCodes = 5, .listing = {"P0133 slow", "P20\r"}};
    found.notes = otherUnitNotes("41 01 85 07 65 04 \r41 01 82 04 00 00 \r\r>");
    noteUnlisted(found.notes, 0);
    noteUnlisted(found.notes, 1);
    found.canWarning = canWarning({{{"P0420 worn"}, 2}, {{}, 0}});
    const auto save = [&] { return saveReport(dialogs, values, found, [](auto) { return "Monday"; }); };
    EXPECT_EQ(save(), "") << "cancelled";
    dialogs.chosen = folder.path("no folder/a.txt");
    EXPECT_THROW(save(), FileError);
    EXPECT_EQ(values.parmInitDir, "") << "the next dialog starts where it did";
    dialogs.chosen = folder.path("a.txt");
    EXPECT_EQ(save() + values.parmInitDir, "a.txt saved" + folder.path());
    EXPECT_EQ(
        contents(folder.path("a.txt")).substr(0, 555),
        "Check Engine, Monday\r\n\r\n"
        "This vehicle answers in the CAN layout: the list below is shifted and does not show its codes.\r\n"
        "Read in that layout, control unit 1:\r\nP0420 worn\r\n(2 more could not be read)\r\n"
        "Read in that layout, control unit 2:\r\nNo codes\r\n\r\n"
        "Service Engine Soon Light is ON\r\n\r\nDiagnostic (MIL) Codes: 5 code(s) reported\r\n"
        "  P0133 slow\r\n  P20\r\n  2 control units answered; what is shown is the first one's.\r\n"
        "  Control unit 2: light ON, 2 code(s) reported\r\n  (1 more is stored than could be listed)\r\n\r\n"
        "Readiness\r\n  Misfire\r\n  Fuel System\r\n  Components\r\n");
}

} // namespace
} // namespace zint
