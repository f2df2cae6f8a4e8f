#include "codes/codesExchange.h"
#include "dtcdb/descriptionSource.h"
#include "support/manualTime.h"
#include "support/scriptedAdapter.h"
#include "support/scriptedPrompts.h"
#include "support/temporaryFolder.h"

namespace zint {
namespace {

enum class Kind { read, clear };

using Conversation = std::vector<std::pair<std::string, std::string>>; ///< requests with their replies

// What follows the opening with a lit vehicle, and with one that keeps its codes when they are cleared.
const Conversation reading = {{"0101\r", "41 01 82 07 65 04 \r\r>"}, {"03\r", "43 01 33 C1 23 00 00 \r\r>"}};
const Conversation clearing = {reading[0], {"04\r", "7F 04 22 \r\r>"}, reading[0], reading[1]};
const Conversation cleared = {{"0101\r", "41 01 00 07 65 00 \r\r>"}};
const std::string lit = "Service Engine Soon Light is \r\nON|Diagnostic (MIL) Codes: 2 code(s) reported|";
const std::string litScreen = lit + "P0133\r\nU0123\r\n";

struct CodesExchangeTest : testing::Test {
    TemporaryFolder folder;
    std::string text = folder.path("dtc.txt");
    EventGate gate;
    ScriptedAdapter adapter{&gate};
    ManualTimer timer, silence;
    ManualClock clock;
    DtcDescriptionSource descriptions = (TemporaryFolder::write(text, ""), DtcDescriptionSource({}, text));
    ScriptedPrompts prompts;
    ProgramValues values;
    CodesExchange exchange{{{adapter, {}, timer, &silence}, clock, descriptions, prompts, values}};
    const CodesPanel& panel = exchange.panel();

    void press(Kind kind)
    {
        prompts.answer = true; // to the question that a clear begins with
        kind == Kind::read ? exchange.pressGetCodes() : exchange.pressClearCodes();
    }

    /// Starts an exchange in which so many requests are answered, the two of the opening among them; the next
    /// is sent and stays unanswered.
    void driveTo(Kind kind, std::size_t answered, Conversation requests)
    {
        const Conversation opening{{"ATZ\r", "ATZ\r\r\rELM327 v1.5\r\r>"}, {"ATE0\r", "ATE0\rOK\r\r>"}};
        requests.insert(requests.begin(), opening.begin(), opening.end());
        for (std::size_t i = 0; i < answered; ++i)
            adapter.expect(requests[i].first).answer(requests[i].second, i + 1); // in pieces
        if (answered < requests.size())
            adapter.expect(requests[answered].first);
        press(kind);
        adapter.play();
    }

    /// Runs a whole exchange. @return what is shown then
    std::string run(Kind kind, Conversation requests)
    {
        requests.emplace_back("ATD\r", "OK\r\r>");
        driveTo(kind, 2 + requests.size(), requests);
        EXPECT_EQ(panel.statusBox, "com1 Closed");
        EXPECT_EQ(panel.canSaveReport, exchange.succeeded());
        return shown();
    }

    std::string shown() const { return panel.stateMIL + "|" + panel.diagCodeFrame + "|" + panel.codesOutput; }

    std::string buttons() const
    {
        return panel.getCodes.caption + "|" + panel.clearCodes.caption +
               (panel.clearCodes.enabled ? "" : "|disabled");
    }
};

TEST_F(CodesExchangeTest, ReadsTheCodesOfALitVehicle)
{
    std::string statuses;
    exchange.onChanged = [&] {
        statuses += statuses.ends_with(panel.statusBox) ? "" : "|" + panel.statusBox;
    };
    clock.date += std::chrono::hours(24);
    EXPECT_EQ(run(Kind::read, reading), litScreen);
    EXPECT_EQ(statuses, "|com1 Open|com1 Init|com1 Reading Data|com1 Closed");
    EXPECT_EQ(panel.canWarning + panel.notes + panel.noDescriptions, "");
    EXPECT_EQ(buttons(), "Get Codes|         Clear MIL          Reset data");
    EXPECT_EQ(panel.readiness[5], "Evaporative System Test Incomplete");
    EXPECT_EQ(panel.labelStats, "Bytes In: 75 Out: 21 Errors: 0");
    EXPECT_EQ(exchange.reading().time, clock.date);
    TemporaryFolder::write(text, "P0133,slow\nU1000,not stored\n");
    EXPECT_EQ(run(Kind::read, reading), lit + "P0133 slow\r\nU0123\r\n");
    std::filesystem::remove(text);
    EXPECT_EQ(run(Kind::read, reading), litScreen) << "the codes are listed all the same";
    EXPECT_NE(prompts.takeMessage(), "");
}

TEST_F(CodesExchangeTest, EvaluatesAMonitorStatusWithoutCodes)
{
    const std::tuple<std::string, std::string, std::string, std::string> rows[] = {
        {"00 07 65 00 \r\r>", "OFF", "Test OK", ""},
        {"80 07 65 00 \r\r>", "ON", "Test OK", ""},
        {"8? 07 65 00 \r\r>", "OFF", "Test OK", "Garbled MIL response (8), try again"},
        {">", "OFF", "input error", "Garbled MIL response (>), try again"}};
    for (const auto& [reply, light, misfire, message] : rows) {
        run(Kind::read, reading); // leaves what must be replaced
        EXPECT_TRUE(exchange.succeeded());
        EXPECT_EQ(run(Kind::read, {{"0101\r", "41 01 " + reply}}),
                  "Service Engine Soon Light is \r\n" + light + "|Diagnostic (MIL) Codes|No codes reported");
        EXPECT_EQ(prompts.takeMessage(), message);
        EXPECT_EQ(exchange.succeeded(), message.empty());
        EXPECT_EQ(panel.readiness[0], "Misfire " + misfire);
        EXPECT_EQ(buttons(), "Get Codes|         Clear MIL          Reset data|disabled");
    }
    EXPECT_TRUE(panel.labelStats.ends_with(" Errors: 2")) << panel.labelStats;
}

TEST_F(CodesExchangeTest, KeepsAReplyThatIsNoMonitorStatusForTheTroubleDialog)
{
    const std::tuple<std::string, std::string, std::string> rows[] = {
        {"41 01>", "41 01>", "41 01"},
        {"UNABLE TO\rCONNECT\r\r>", "UNABLE TO\rCONNECT\r\r>", "UNABLE TO / CONNECT"},
        {"BUS INIT: ...ERROR\r\r>", ">", "BUS INIT: ...ERROR"}}; // a notice is no reply
    for (const auto& [answer, reply, reason] : rows) {
        EXPECT_EQ(run(Kind::clear, {{"0101\r", answer}}), "|Diagnostic (MIL) Codes|");
        EXPECT_EQ(prompts.takeMessage(), "Please try again, ignition must be ON.  If ignition is ON, see "
                                         "fails-to-connect under Help.");
        EXPECT_EQ(prompts.reason, "The adapter answered: " + reason);
        EXPECT_EQ(values.lastFailureText, reply);
        EXPECT_EQ(buttons(), "Get Engine Data|Clear Codes|disabled") << "it ends with its own button";
    }
    EXPECT_TRUE(panel.labelStats.ends_with(" Errors: 3"));
}

TEST_F(CodesExchangeTest, TellsWhatTheListingDoesNotShow)
{
    const std::string more = "The Vehicle Report in the main menu reads the codes of all control units.\r\n";
    run(Kind::read, {{"0101\r", "41 01 7F 07 65 00 \r41 01 80 04 00 00 \r\r>"},
                     {"03\r", "43 01 33 03 01 04 20 \r43 04 21 00 00 00 00 \r\r>"}});
    EXPECT_EQ(shown(), "Service Engine Soon Light is \r\nOFF|Diagnostic (MIL) Codes: 127 code(s) reported|"
                       "P0133\r\nP0301\r\nP0420\r\n");
    EXPECT_TRUE(panel.notes.ends_with(
        "ON, 0 code(s) reported\r\n(124 more are stored than could be listed)\r\n" + more));
    run(Kind::read, {{"0101\r", "41 01 00 07 65 00 \r41 01 81 04 00 00 \r\r>"}});
    EXPECT_TRUE(panel.notes.ends_with("\r\nControl unit 2: light ON, 1 code(s) reported\r\n" + more));

    TemporaryFolder::write(text, "P0420,worn\n");
    EXPECT_EQ(run(Kind::read, {reading[0], {"03\r", "43 01 04 20 \r\r>"}}), lit + "P0104\r\nP20\r\r\r\n");
    EXPECT_TRUE(panel.canWarning.ends_with("\r\nRead in that layout:\r\nP0420 worn\r\n"));
    EXPECT_EQ(panel.notes, more);
    run(Kind::clear, cleared);
    EXPECT_EQ(panel.canWarning, "") << "it goes with its list";
}

TEST_F(CodesExchangeTest, ClearsTheCodesAfterTheQuestion)
{
    prompts.answer = false;
    exchange.pressClearCodes();
    EXPECT_FALSE(adapter.isOpen());
    EXPECT_EQ(prompts.question, "Verify OBD Reset\nClearing the OBD will erase all diagnostic data and \r\n"
                                "   may cause the vehicle to run poorly for a short \r\n"
                                "   time while the system recalibrates. \r\n\r\n To clear the OBD, press OK");
    run(Kind::read, reading);
    driveTo(Kind::clear, 3, clearing);
    EXPECT_EQ(shown(), litScreen) << "the list stays until there is another one";
    adapter.sendNotice(PortNotice::unexplained);
    EXPECT_EQ(panel.statusBox, "com1 Reading Data RESET - unhandled comm Event: 0");
    adapter.expect("0101\r");
    adapter.receive("44 \r\r>");
    EXPECT_EQ(buttons(), "Get Codes|Clear Codes|disabled");
    adapter.expect("ATD\r");
    press(Kind::read);
    EXPECT_EQ(run(Kind::clear, {reading[0], {"04\r", "44 \r\r>"}, cleared[0]}),
              "Service Engine Soon Light is \r\nOFF|Diagnostic (MIL) Codes|No codes reported");
    EXPECT_EQ(buttons(), "Get Codes|Clear Codes|disabled");
    EXPECT_TRUE(exchange.succeeded() && exchange.hasSentClear());
    run(Kind::clear, cleared);
    EXPECT_FALSE(exchange.hasSentClear()) << "there is nothing to clear";
    EXPECT_EQ(run(Kind::clear, clearing), litScreen);
    EXPECT_EQ(buttons(), "Get Codes|Clear Codes");
    driveTo(Kind::clear, 2, clearing);
    adapter.expect("ATD\r");
    press(Kind::read);
    EXPECT_EQ(buttons(), "Get Codes|Cancel") << "each button restores its own caption";
    driveTo(Kind::read, 0, {});
    EXPECT_EQ(panel.codesOutput, "") << "emptied when the next read begins";
    adapter.expect("ATD\r");
    exchange.unload(); // as when the window goes away
    EXPECT_FALSE(adapter.isOpen());
}

TEST_F(CodesExchangeTest, EndsInEachState)
{
    for (int i = 0; i < 20; ++i) {
        const Kind kind = i < 8 ? Kind::read : Kind::clear;
        const auto answered = static_cast<std::size_t>(kind == Kind::read ? i / 2 : (i - 8) / 2);
        SCOPED_TRACE(i);
        driveTo(kind, answered, kind == Kind::read ? reading : clearing);
        EXPECT_EQ(timer.enabled(), answered == 0) << "the reset alone is guarded";
        const bool isClear = kind == Kind::clear && answered < 4; // a clear's second half ends as a read
        const bool isGone = i % 2 > 0;
        if (isGone) {
            adapter.vanish();
        } else {
            adapter.expect("ATD\r");
            press(isClear ? Kind::clear : Kind::read);
        }
        EXPECT_EQ(panel.statusBox, isGone ? "com1 - adapter disconnected" : "com1 Closed");
        EXPECT_EQ((isClear ? panel.clearCodes : panel.getCodes).caption,
                  isClear ? "Clear Codes" : "Get Codes");
        EXPECT_FALSE(exchange.isRunning() || exchange.succeeded() || timer.enabled() || silence.enabled());
        adapter.workAgain();
        EXPECT_EQ(run(Kind::read, reading), litScreen) << "it does not start again";
    }
}

TEST_F(CodesExchangeTest, TellsThatNothingAnswersAndThatThePortDoesNotOpen)
{
    for (const Kind kind : {Kind::read, Kind::clear}) {
        driveTo(kind, 0, reading);
        adapter.expect("ATD\r");
        timer.tick();
        EXPECT_EQ(prompts.takeMessage(),
                  "OBD is not responding... Please verify connections between computer "
                  "and vehicle. See fails-to-respond under Help.");
        EXPECT_EQ(std::exchange(values.lastFailureText, {}), "Timeout responding to ATZ");
        EXPECT_EQ(panel.statusBox, "com1 Closed");
        adapter.openError = CommError(16, "Device or resource busy");
        press(kind);
        EXPECT_EQ(panel.statusBox, "com1 - Comm init error: 16: Device or resource busy");
        EXPECT_FALSE(timer.enabled() || exchange.succeeded());
        adapter.workAgain();
    }
    EXPECT_EQ(buttons(), "Get Codes|Clear Codes|disabled");
    EXPECT_TRUE(panel.labelStats.ends_with(" Errors: 2")) << panel.labelStats;
}

} // namespace
} // namespace zint
