#include "codes/codesExchange.h"
#include "dtcdb/dtcDatabase.h"
#include "support/manualTimer.h"
#include "support/scriptedAdapter.h"
#include "support/scriptedPrompts.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zint {
namespace {

constexpr const char* ignitionText =
    "Please try again, ignition must be ON.  If ignition is ON, see fails-to-connect under Help.";
constexpr const char* timeoutText = "OBD is not responding... Please verify connections between computer and "
                                    "vehicle. See fails-to-respond under Help.";
constexpr const char* litStatus = "41 01 82 07 65 04 \r\r>";
constexpr const char* goodStatus = "41 01 00 07 65 00 \r\r>";
constexpr const char* codesReply = "43 01 33 C1 23 00 00 \r\r>";

/// Descriptions in a map, which can be damaged.
class MapDescriptions final : public CodeDescriptionSource {
public:
    std::map<std::string, std::string, std::less<>> texts;
    bool exists = true;
    bool openFails = false;
    std::string damagedAt; ///< reading this code fails
    mutable int openings = 0;

    bool available() const override { return exists; }

    std::unique_ptr<CodeDescriptions> open() const override
    {
        ++openings;
        if (openFails)
            throw DatabaseError("damaged file");
        return std::make_unique<Opened>(*this);
    }

private:
    struct Opened final : CodeDescriptions {
        explicit Opened(const MapDescriptions& source) : source_(source) {}

        std::optional<std::string> describe(std::string_view code) override
        {
            if (code == source_.damagedAt)
                throw DatabaseError("damaged record");
            const auto found = source_.texts.find(code);
            return found == source_.texts.end() ? std::nullopt : std::optional(found->second);
        }

        const MapDescriptions& source_;
    };
};

enum class Kind { read, clear };

struct CodesExchangeTest : testing::Test {
    EventGate gate;
    ScriptedAdapter adapter{&gate};
    ManualTimer timer;
    MapDescriptions descriptions;
    ScriptedPrompts prompts;
    ProgramValues values;
    CodesExchange exchange{adapter, timer, {}, descriptions, prompts, values};
    const CodesPanel& panel = exchange.panel();
    std::vector<std::string> statuses; ///< each status shown, once noteStatuses() was called

    CodesExchangeTest()
    {
        gate.onError = [](const std::string& text) { ADD_FAILURE() << text; };
    }

    void noteStatuses()
    {
        exchange.onChanged = [this] {
            if (statuses.empty() || statuses.back() != panel.statusBox)
                statuses.push_back(panel.statusBox);
        };
    }

    void press(Kind kind)
    {
        if (kind == Kind::clear && !adapter.isOpen())
            prompts.willAnswer(true);
        kind == Kind::read ? exchange.pressGetCodes() : exchange.pressClearCodes();
    }

    /// Starts an exchange with a lit vehicle and answers its first `answered` requests; the next one is sent
    /// and stays without an answer. A clear leaves codes behind.
    void driveTo(Kind kind, std::size_t answered)
    {
        for (std::size_t i = 0; i <= answered; ++i) {
            auto& step = adapter.expect(conversation(kind)[i].first);
            if (i < answered)
                step.answer(conversation(kind)[i].second);
        }
        press(kind);
        adapter.play();
    }

    static const std::vector<std::pair<std::string, std::string>>& conversation(Kind kind)
    {
        using Conversation = std::vector<std::pair<std::string, std::string>>;
        static const Conversation read = {{"ATZ\r", "ATZ\r\r\rELM327 v1.5\r\r>"},
                                          {"ATE0\r", "ATE0\rOK\r\r>"},
                                          {"0101\r", litStatus},
                                          {"03\r", codesReply}};
        static const Conversation clear = {read[0], read[1], read[2], {"04\r", "44 \r\r>"}, read[2], read[3]};
        return kind == Kind::read ? read : clear;
    }

    /// A whole read exchange with a given reply to "0101" that is not followed by "03".
    void readStatus(const std::string& reply)
    {
        adapter.expectOpening();
        adapter.expect("0101\r").answer(reply);
        adapter.expect("ATD\r");
        exchange.pressGetCodes();
        adapter.play();
    }

    /// A whole read exchange with a lit vehicle and a given reply to "03".
    void readCodes(const std::string& reply)
    {
        adapter.expectOpening();
        adapter.expect("0101\r").answer(litStatus);
        adapter.expect("03\r").answer(reply);
        adapter.expect("ATD\r");
        exchange.pressGetCodes();
        adapter.play();
    }

    void expectStartsAgain()
    {
        adapter.workAgain();
        prompts.takeMessages();
        readStatus(goodStatus);
        EXPECT_TRUE(exchange.succeeded());
        EXPECT_EQ(panel.statusBox, "com1 Closed");
        EXPECT_EQ(panel.stateMIL, "Service Engine Soon Light is \r\nOFF");
    }
};

TEST_F(CodesExchangeTest, ShowsAnIdleWindowAtFirst)
{
    EXPECT_EQ(panel.statusBox, "com1 Closed");
    EXPECT_EQ(panel.labelStats, "Bytes In: 0  Out: 0     Errors: 0");
    EXPECT_EQ(panel.getCodes.caption, "Get Engine Data");
    EXPECT_EQ(panel.clearCodes.caption, "         Clear MIL          Reset data");
    EXPECT_FALSE(panel.clearCodes.enabled) << "until codes have been found";
    EXPECT_EQ(panel.diagCodeFrame, "Diagnostic (MIL) Codes");
    EXPECT_EQ(panel.stateMIL + panel.codesOutput, "");
    EXPECT_FALSE(exchange.isRunning());
}

TEST_F(CodesExchangeTest, ReadsTheCodesOfALitVehicle)
{
    adapter.expect("ATZ\r").answer("ATZ\r\r\rELM327 v1.5\r\r>");
    adapter.expect("ATE0\r").answer("ATE0\rOK\r\r>");
    adapter.expect("0101\r").answer(litStatus).inChunksOf(3);
    adapter.expect("03\r").answer(codesReply).inChunksOf(1);
    adapter.expect("ATD\r").answer("OK\r\r>");

    noteStatuses();
    exchange.pressGetCodes();
    EXPECT_EQ(panel.getCodes.caption, "Cancel");
    EXPECT_TRUE(timer.enabled());
    adapter.play();

    EXPECT_EQ(statuses,
              (std::vector<std::string>{"com1 Open", "com1 Init", "com1 Reading Data", "com1 Closed"}));
    EXPECT_EQ(panel.stateMIL, "Service Engine Soon Light is \r\nON");
    EXPECT_EQ(panel.diagCodeFrame, "Diagnostic (MIL) Codes: 2 code(s) reported");
    EXPECT_EQ(panel.codesOutput, "P0133\r\nU0123\r\n");
    EXPECT_EQ(panel.readiness[5], "Evaporative System Test Incomplete");
    EXPECT_EQ(panel.getCodes.caption, "Get Codes");
    EXPECT_TRUE(panel.clearCodes.enabled);
    EXPECT_EQ(panel.labelStats, "Bytes In: 75 Out: 21 Errors: 0");
    EXPECT_TRUE(exchange.succeeded());
    EXPECT_EQ(exchange.reportedCodeCount(), 2);
    EXPECT_EQ(values.lastFailureText, "");
    EXPECT_FALSE(adapter.isOpen());
    EXPECT_FALSE(timer.enabled());
}

TEST_F(CodesExchangeTest, EvaluatesTheMonitorStatus)
{
    const struct {
        const char* name;
        std::string reply;
        std::string stateMIL; ///< the second line
        std::string message;
        std::string lastFailureText;
        std::string readinessOfCatalyst;
    } rows[] = {
        {"light off, no codes", goodStatus, "OFF", "", "", " Test OK"},
        {"light on without a code", "41 01 80 07 65 00 \r\r>", "ON", "", "", " Test OK"},
        {"behind a bus initialisation", "BUS INIT: ...OK\r41 01 00 07 65 00 \r\r>", "OFF", "", "",
         " Test OK"},
        {"with line feeds", "BUS INIT: OK\r\n41 01 00 07 65 00 \r\n\r\n>", "OFF", "", "", " Test OK"},
        {"no data", "NO DATA\r\r>", "", ignitionText, "NO DATA\r\r>", ""},
        {"no bus", "BUS INIT: ...ERROR\r\r>", "", ignitionText, "\r>", ""},
        {"a search before the data", "SEARCHING...\r41 01 00 07 65 00 \r\r>", "", ignitionText,
         "SEARCHING...\r41 01 00 07 65 00 \r\r>", ""},
        {"another service", "41 00 BE 3F A8 13 \r\r>", "", ignitionText, "41 00 BE 3F A8 13 \r\r>", ""},
        {"the blank is missing", "41 01>", "", ignitionText, "41 01>", ""},
        {"status byte garbled", "41 01 G0 07 65 00 \r\r>", "OFF", "Garbled MIL response (G), try again", "",
         " Test OK"},
        {"second digit garbled", "41 01 8? 07 65 00 \r\r>", "OFF", "Garbled MIL response (8), try again", "",
         " Test OK"},
        {"nothing behind the start", "41 01 >", "OFF", "Garbled MIL response (>), try again", "",
         " input error"},
        {"two blanks read as 0", "41 01    07 65 00 \r\r>", "OFF", "", "", " Test OK"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        values.lastFailureText.clear();
        CodesExchange fresh(adapter, timer, {}, descriptions, prompts, values);
        adapter.expectOpening();
        adapter.expect("0101\r").answer(row.reply);
        adapter.expect("ATD\r");
        fresh.pressGetCodes();
        adapter.play();

        const int errors = row.message.empty() ? 0 : 1;
        EXPECT_EQ(row.message.empty() ? "" : prompts.takeMessage(), row.message);
        EXPECT_TRUE(fresh.panel().labelStats.ends_with("Errors: " + std::to_string(errors)));
        EXPECT_EQ(fresh.succeeded(), row.message.empty());
        EXPECT_EQ(values.lastFailureText, row.lastFailureText);
        if (row.stateMIL.empty()) {
            EXPECT_EQ(fresh.panel().stateMIL + fresh.panel().codesOutput, "") << "nothing is evaluated";
            EXPECT_EQ(fresh.panel().readiness, initialReadiness());
        } else {
            EXPECT_EQ(fresh.panel().stateMIL, "Service Engine Soon Light is \r\n" + row.stateMIL);
            EXPECT_EQ(fresh.panel().codesOutput, "No codes reported");
            EXPECT_EQ(fresh.panel().readiness[3], "Catalyst" + row.readinessOfCatalyst);
        }
        EXPECT_EQ(fresh.panel().diagCodeFrame, "Diagnostic (MIL) Codes");
        EXPECT_FALSE(fresh.panel().clearCodes.enabled);
        EXPECT_EQ(fresh.panel().getCodes.caption, "Get Codes");
        EXPECT_EQ(fresh.panel().statusBox, "com1 Closed");
    }
}

TEST_F(CodesExchangeTest, AsksForCodesThatAreStoredWithTheLightOff)
{
    adapter.expectOpening();
    adapter.expect("0101\r").answer("41 01 7F 07 65 00 \r\r>");
    adapter.expect("03\r").answer("43 01 33 03 01 04 20 \r43 04 21 00 00 00 00 \r\r>");
    adapter.expect("ATD\r");
    exchange.pressGetCodes();
    adapter.play();
    EXPECT_EQ(panel.stateMIL, "Service Engine Soon Light is \r\nOFF");
    EXPECT_EQ(panel.diagCodeFrame, "Diagnostic (MIL) Codes: 127 code(s) reported");
    EXPECT_EQ(panel.codesOutput, "P0133\r\nP0301\r\nP0420\r\n") << "the first line only";
}

TEST_F(CodesExchangeTest, ForgetsTheCodesOfTheLastReadWhenTheVehicleHasNoneAnyMore)
{
    readCodes(codesReply);
    ASSERT_TRUE(panel.clearCodes.enabled);
    readStatus(goodStatus);
    EXPECT_EQ(panel.codesOutput, "No codes reported");
    EXPECT_EQ(panel.diagCodeFrame, "Diagnostic (MIL) Codes");
    EXPECT_FALSE(panel.clearCodes.enabled);
}

TEST_F(CodesExchangeTest, EmptiesTheListWhenAReadBegins)
{
    readCodes(codesReply);
    driveTo(Kind::read, 0);
    EXPECT_EQ(panel.codesOutput, "");
    adapter.expect("ATD\r");
    press(Kind::read);
}

TEST_F(CodesExchangeTest, AddsDescriptionsToTheCodesThatHaveOne)
{
    descriptions.texts = {{"U0123", "Lost communication"}, {"P0301", "not stored"}};
    readCodes(codesReply);
    EXPECT_EQ(panel.codesOutput, "P0133\r\nU0123 Lost communication\r\n");
    EXPECT_EQ(descriptions.openings, 1);
    readCodes(codesReply);
    EXPECT_EQ(descriptions.openings, 2) << "the database is open during a look-up only";
}

TEST_F(CodesExchangeTest, ListsBareCodesWithoutADatabase)
{
    descriptions.exists = false;
    descriptions.texts = {{"P0133", "slow"}};
    CodesExchange without(adapter, timer, {}, descriptions, prompts, values);
    descriptions.exists = true; // too late: it was looked for when the window opened
    adapter.expectOpening();
    adapter.expect("0101\r").answer(litStatus);
    adapter.expect("03\r").answer(codesReply);
    adapter.expect("ATD\r");
    without.pressGetCodes();
    adapter.play();
    EXPECT_EQ(without.panel().codesOutput, "P0133\r\nU0123\r\n");
    EXPECT_EQ(descriptions.openings, 0);
}

TEST_F(CodesExchangeTest, ListsTheCodesAllTheSameWhenTheDatabaseIsDamaged)
{
    descriptions.openFails = true;
    readCodes(codesReply);
    EXPECT_EQ(prompts.takeMessage(), "damaged file");
    EXPECT_EQ(panel.codesOutput, "P0133\r\nU0123\r\n");
    EXPECT_EQ(panel.statusBox, "com1 Closed");

    descriptions.openFails = false;
    descriptions.texts = {{"P0133", "slow"}};
    descriptions.damagedAt = "U0123";
    readCodes(codesReply);
    EXPECT_EQ(prompts.takeMessage(), "damaged record");
    EXPECT_EQ(panel.codesOutput, "P0133 slow\r\nU0123\r\n");
    EXPECT_EQ(panel.getCodes.caption, "Get Codes");
}

TEST_F(CodesExchangeTest, ClearsTheCodesAfterTheQuestion)
{
    readCodes(codesReply);
    const auto start = adapter.history().size();
    adapter.expectOpening();
    adapter.expect("0101\r").answer(litStatus);
    adapter.expect("04\r").answer("44 \r\r>");
    adapter.expect("0101\r").answer(goodStatus);
    adapter.expect("ATD\r");
    noteStatuses();
    prompts.willAnswer(true);
    exchange.pressClearCodes();
    EXPECT_EQ(panel.clearCodes.caption, "Cancel");
    EXPECT_EQ(panel.getCodes.caption, "Get Codes");
    EXPECT_EQ(panel.codesOutput, "P0133\r\nU0123\r\n") << "they stand until the vehicle answers";
    adapter.play();

    ASSERT_EQ(prompts.questions().size(), 1U);
    EXPECT_EQ(prompts.questions()[0].title, "Verify OBD Reset");
    EXPECT_EQ(prompts.questions()[0].text, "Clearing the OBD will erase all diagnostic data and \r\n"
                                           "   may cause the vehicle to run poorly for a short \r\n"
                                           "   time while the system recalibrates. \r\n"
                                           "\r\n"
                                           " To clear the OBD, press OK");
    EXPECT_EQ(statuses, (std::vector<std::string>{"com1 Open", "com1 Init", "com1 Reading Data",
                                                  "com1 Reading Data RESET", "com1 Closed"}));
    EXPECT_EQ(panel.stateMIL, "Service Engine Soon Light is \r\nOFF");
    EXPECT_EQ(panel.codesOutput, "No codes reported");
    EXPECT_EQ(panel.clearCodes.caption, "Clear Codes");
    EXPECT_FALSE(panel.clearCodes.enabled);
    EXPECT_TRUE(exchange.succeeded());
    EXPECT_EQ(adapter.history().size() - start, 8U);
}

TEST_F(CodesExchangeTest, ClearsNothingWhenTheQuestionIsDeclined)
{
    readCodes(codesReply);
    const CodesPanel before = panel;
    prompts.willAnswer(false);
    exchange.pressClearCodes();
    EXPECT_FALSE(adapter.isOpen());
    EXPECT_EQ(panel.clearCodes.caption, before.clearCodes.caption);
    EXPECT_EQ(panel.statusBox, "com1 Closed");
    EXPECT_EQ(panel.codesOutput, before.codesOutput);

    readStatus(goodStatus); // would send "04" if the press had been taken for a clear
}

TEST_F(CodesExchangeTest, SendsNoClearToAVehicleWithoutCodes)
{
    adapter.expectOpening();
    adapter.expect("0101\r").answer(goodStatus);
    adapter.expect("ATD\r");
    press(Kind::clear);
    adapter.play();
    EXPECT_EQ(panel.clearCodes.caption, "Clear Codes");
    EXPECT_EQ(panel.codesOutput, "No codes reported");

    readStatus(goodStatus);
}

TEST_F(CodesExchangeTest, ListsTheCodesThatRemainAfterAClear)
{
    adapter.expectOpening();
    adapter.expect("0101\r").answer(litStatus);
    adapter.expect("04\r").answer("7F 04 22 \r\r>");
    adapter.expect("0101\r").answer("41 01 81 07 65 00 \r\r>");
    adapter.expect("03\r").answer("43 03 01 00 00 00 00 \r\r>");
    adapter.expect("ATD\r");
    press(Kind::clear);
    adapter.play();
    EXPECT_EQ(panel.codesOutput, "P0301\r\n");
    EXPECT_EQ(panel.diagCodeFrame, "Diagnostic (MIL) Codes: 1 code(s) reported");
    EXPECT_EQ(panel.getCodes.caption, "Get Codes") << "the exchange ends as a read";
    EXPECT_EQ(panel.clearCodes.caption, "Clear Codes");
    EXPECT_TRUE(panel.clearCodes.enabled);
    EXPECT_EQ(panel.statusBox, "com1 Closed");
}

TEST_F(CodesExchangeTest, EndsAClearThatFailsWithItsOwnButton)
{
    adapter.expectOpening();
    adapter.expect("0101\r").answer("UNABLE TO CONNECT\r\r>");
    adapter.expect("ATD\r");
    press(Kind::clear);
    adapter.play();
    EXPECT_EQ(prompts.takeMessage(), ignitionText);
    EXPECT_EQ(values.lastFailureText, "UNABLE TO CONNECT\r\r>");
    EXPECT_EQ(panel.clearCodes.caption, "Clear Codes");
    EXPECT_EQ(panel.getCodes.caption, "Get Engine Data");
    EXPECT_FALSE(exchange.succeeded());
}

TEST_F(CodesExchangeTest, IsCancelledInEachState)
{
    for (const Kind kind : {Kind::read, Kind::clear}) {
        for (std::size_t answered = 0; answered < conversation(kind).size(); ++answered) {
            SCOPED_TRACE(testing::Message() << static_cast<int>(kind) << " after " << answered << " replies");
            driveTo(kind, answered);
            const bool endsAsRead = kind == Kind::read || answered > 3;
            const Button& button = endsAsRead ? panel.getCodes : panel.clearCodes;
            if (answered <= 3) {
                EXPECT_EQ(button.caption, "Cancel");
            }
            EXPECT_EQ(timer.enabled(), answered == 0);

            adapter.expect("ATD\r").answer("OK\r\r>");
            press(endsAsRead ? Kind::read : Kind::clear);
            adapter.play();
            EXPECT_EQ(panel.statusBox, "com1 Closed");
            EXPECT_EQ(button.caption, endsAsRead ? "Get Codes" : "Clear Codes");
            EXPECT_NE(panel.clearCodes.caption, "Cancel");
            EXPECT_FALSE(timer.enabled());
            EXPECT_FALSE(exchange.succeeded());
            expectStartsAgain();
        }
    }
    EXPECT_TRUE(panel.labelStats.ends_with(" Errors: 0")) << "cancelling is no error";
}

TEST_F(CodesExchangeTest, TellsWhenTheAdapterDoesNotAnswerTheReset)
{
    for (const Kind kind : {Kind::read, Kind::clear}) {
        SCOPED_TRACE(static_cast<int>(kind));
        values.lastFailureText.clear();
        driveTo(kind, 0);
        adapter.expect("ATD\r");
        timer.tick();
        EXPECT_EQ(prompts.takeMessage(), timeoutText);
        EXPECT_EQ(values.lastFailureText, "Timeout responding to ATZ");
        EXPECT_EQ(panel.statusBox, "com1 Closed");
        EXPECT_EQ(kind == Kind::read ? panel.getCodes.caption : panel.clearCodes.caption,
                  kind == Kind::read ? "Get Codes" : "Clear Codes");
        EXPECT_TRUE(panel.labelStats.ends_with(" Errors: " + std::to_string(kind == Kind::read ? 1 : 2)));
        EXPECT_FALSE(exchange.succeeded());
        timer.tick();
        expectStartsAgain();
    }
}

TEST_F(CodesExchangeTest, WaitsForASilentVehicleUntilItIsCancelled)
{
    driveTo(Kind::read, 2);
    timer.tick();
    EXPECT_TRUE(exchange.isRunning());
    EXPECT_EQ(panel.statusBox, "com1 Reading Data");
    adapter.expect("ATD\r");
    press(Kind::read);
}

TEST_F(CodesExchangeTest, EndsWhenTheDeviceVanishesInAnyState)
{
    int errors = 0;
    for (const Kind kind : {Kind::read, Kind::clear}) {
        for (std::size_t answered = 0; answered < conversation(kind).size(); ++answered) {
            SCOPED_TRACE(testing::Message() << static_cast<int>(kind) << " after " << answered << " replies");
            driveTo(kind, answered);
            adapter.vanish();
            EXPECT_EQ(panel.statusBox, "com1 - adapter disconnected");
            EXPECT_TRUE(panel.labelStats.ends_with(" Errors: " + std::to_string(++errors)))
                << panel.labelStats;
            EXPECT_NE(panel.getCodes.caption, "Cancel");
            EXPECT_NE(panel.clearCodes.caption, "Cancel");
            EXPECT_FALSE(timer.enabled());
            EXPECT_FALSE(exchange.succeeded());
            timer.tick();

            press(Kind::read);
            EXPECT_EQ(panel.statusBox, "com1 - Comm init error: 2: No such file or directory");
            expectStartsAgain();
        }
    }
}

TEST_F(CodesExchangeTest, LeavesCaptionsAndTimerWhenThePortCannotBeOpened)
{
    for (const char* captions : {"at first", "after a read"}) {
        SCOPED_TRACE(captions);
        const std::string getCaption = panel.getCodes.caption;
        const std::string clearCaption = panel.clearCodes.caption;
        adapter.refuseToOpen(CommError(16, "Device or resource busy"));
        for (const Kind kind : {Kind::read, Kind::clear}) {
            press(kind);
            EXPECT_EQ(panel.statusBox, "com1 - Comm init error: 16: Device or resource busy");
            EXPECT_EQ(panel.getCodes.caption, getCaption);
            EXPECT_EQ(panel.clearCodes.caption, clearCaption);
            EXPECT_TRUE(panel.labelStats.ends_with(" Errors: 0"));
            EXPECT_FALSE(timer.enabled());
            EXPECT_FALSE(exchange.isRunning());
            EXPECT_FALSE(exchange.succeeded());
        }
        expectStartsAgain();
    }
}

TEST_F(CodesExchangeTest, ShowsAnEventThatTheDriverDoesNotExplain)
{
    driveTo(Kind::read, 2);
    const std::string counters = panel.labelStats;
    int changes = 0;
    exchange.onChanged = [&changes] { ++changes; };
    adapter.sendEvent(commEvent::unknown);
    EXPECT_EQ(panel.statusBox, "com1 Reading Data - unhandled comm Event: 0");
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(panel.labelStats, counters) << "refreshed with the next reply";
    adapter.sendEvent(1006);
    EXPECT_EQ(panel.statusBox, "com1 Reading Data - unhandled comm Event: 0");

    adapter.expect("ATD\r");
    press(Kind::read);
    EXPECT_TRUE(panel.labelStats.ends_with(" Errors: 1"));
}

TEST_F(CodesExchangeTest, HandlesNothingWhileAMessageIsOpen)
{
    adapter.expectOpening();
    adapter.expect("0101\r").answer("NO DATA\r\r>");
    adapter.expect("ATD\r");
    prompts.whileOpen([this] {
        adapter.receive("41 01 82 07 65 04 \r\r>");
        gate.run([this] { exchange.pressGetCodes(); });
        EXPECT_EQ(panel.getCodes.caption, "Cancel") << "the press waits";
        EXPECT_TRUE(adapter.isOpen());
    });
    adapter.expect("ATZ\r");
    exchange.pressGetCodes();
    adapter.play();

    EXPECT_EQ(prompts.takeMessage(), ignitionText);
    EXPECT_EQ(values.lastFailureText, "NO DATA\r\r>");
    EXPECT_EQ(panel.stateMIL, "") << "what arrived meanwhile belongs to no exchange";
    EXPECT_EQ(panel.statusBox, "com1 Open") << "the waiting press began the next exchange";
    EXPECT_EQ(panel.getCodes.caption, "Cancel");
    adapter.expect("ATD\r");
    press(Kind::read);
}

TEST_F(CodesExchangeTest, CountsADeviceOnceThatVanishesWhileAMessageIsOpen)
{
    adapter.expectOpening();
    adapter.expect("0101\r").answer("NO DATA\r\r>");
    prompts.whileOpen([this] { adapter.vanish(); });
    exchange.pressGetCodes();
    adapter.play();
    EXPECT_EQ(prompts.takeMessage(), ignitionText);
    EXPECT_FALSE(exchange.isRunning());
    EXPECT_NE(panel.getCodes.caption, "Cancel");
    EXPECT_TRUE(panel.labelStats.ends_with(" Errors: 1")) << panel.labelStats;
    expectStartsAgain();
}

TEST_F(CodesExchangeTest, ClosesThePortWhenTheWindowGoesAway)
{
    driveTo(Kind::read, 0);
    adapter.expect("ATD\r");
    exchange.unload();
    EXPECT_FALSE(adapter.isOpen());
    EXPECT_FALSE(timer.enabled());
    EXPECT_EQ(adapter.history().back(), "close");

    exchange.unload();
    EXPECT_EQ(adapter.history().size(), 4U) << "nothing more to close";
}

} // namespace
} // namespace zint
