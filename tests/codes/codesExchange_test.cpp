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

using Conversation = std::vector<std::pair<std::string, std::string>>; ///< requests with their replies

const Conversation opening = {{"ATZ\r", "ATZ\r\r\rELM327 v1.5\r\r>"}, {"ATE0\r", "ATE0\rOK\r\r>"}};

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

    /// Runs a whole exchange of which `requests` follow the opening.
    void run(Kind kind, const Conversation& requests)
    {
        adapter.expectOpening();
        for (const auto& [request, reply] : requests)
            adapter.expect(request).answer(reply);
        adapter.expect("ATD\r").answer("OK\r\r>");
        press(kind);
        adapter.play();
    }

    /// All that is sent and answered in an exchange with a lit vehicle; a clear leaves codes behind.
    static Conversation conversation(Kind kind)
    {
        Conversation all = opening;
        if (kind == Kind::clear)
            all.insert(all.end(), {{"0101\r", litStatus}, {"04\r", "44 \r\r>"}});
        all.insert(all.end(), {{"0101\r", litStatus}, {"03\r", codesReply}});
        return all;
    }

    /// Starts an exchange and answers the first `answered` requests; the next is sent and stays unanswered.
    void driveTo(Kind kind, std::size_t answered)
    {
        const Conversation all = conversation(kind);
        for (std::size_t i = 0; i < answered; ++i)
            adapter.expect(all[i].first).answer(all[i].second);
        adapter.expect(all[answered].first);
        press(kind);
        adapter.play();
    }

    /// Calls `check` with each kind of exchange in each of its states.
    template <typename Check>
    void inEachState(const Check& check)
    {
        for (const Kind kind : {Kind::read, Kind::clear}) {
            for (std::size_t answered = 0; answered < conversation(kind).size(); ++answered) {
                SCOPED_TRACE((kind == Kind::read ? "read, replies: " : "clear, replies: ") +
                             std::to_string(answered));
                driveTo(kind, answered);
                check(kind, answered);
                EXPECT_FALSE(exchange.isRunning());
                EXPECT_NE(panel.getCodes.caption, "Cancel");
                EXPECT_NE(panel.clearCodes.caption, "Cancel");
                EXPECT_FALSE(timer.enabled());
                EXPECT_FALSE(exchange.succeeded());
                expectStartsAgain();
            }
        }
    }

    void expectStartsAgain()
    {
        adapter.workAgain();
        run(Kind::read, {{"0101\r", litStatus}, {"03\r", codesReply}});
        EXPECT_TRUE(exchange.succeeded());
        EXPECT_EQ(panel.statusBox, "com1 Closed");
        EXPECT_EQ(panel.codesOutput, "P0133\r\nU0123\r\n");
    }
};

TEST_F(CodesExchangeTest, ShowsAnIdleWindowAtFirst)
{
    EXPECT_EQ(panel.statusBox, "com1 Closed");
    EXPECT_EQ(panel.labelStats, "Bytes In: 0  Out: 0     Errors: 0");
    EXPECT_EQ(panel.getCodes.caption, "Get Engine Data");
    EXPECT_EQ(panel.clearCodes.caption, "         Clear MIL          Reset data");
    EXPECT_FALSE(panel.clearCodes.enabled) << "until codes have been found";
}

TEST_F(CodesExchangeTest, ReadsTheCodesOfALitVehicle)
{
    adapter.expectOpening();
    adapter.expect("0101\r").answer(litStatus).inChunksOf(3);
    adapter.expect("03\r").answer(codesReply).inChunksOf(1);
    adapter.expect("ATD\r");
    noteStatuses();
    exchange.pressGetCodes();
    EXPECT_EQ(panel.getCodes.caption, "Cancel");
    adapter.play();

    const std::vector<std::string> words = {"com1 Open", "com1 Init", "com1 Reading Data", "com1 Closed"};
    EXPECT_EQ(statuses, words);
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
}

TEST_F(CodesExchangeTest, EvaluatesAMonitorStatusWithoutCodes)
{
    const struct {
        const char* name;
        std::string reply;
        std::string light;
        std::string message;
    } rows[] = {
        {"light off", goodStatus, "OFF", ""},
        {"light on without a code", "41 01 80 07 65 00 \r\r>", "ON", ""},
        {"behind a bus initialisation", "BUS INIT: ...OK\r41 01 00 07 65 00 \r\r>", "OFF", ""},
        {"with line feeds", "BUS INIT: OK\r\n41 01 00 07 65 00 \r\n\r\n>", "OFF", ""},
        {"two blanks read as 0", "41 01    07 65 00 \r\r>", "OFF", ""},
        {"first digit garbled", "41 01 G0 07 65 00 \r\r>", "OFF", "Garbled MIL response (G), try again"},
        {"second digit garbled", "41 01 8? 07 65 00 \r\r>", "OFF", "Garbled MIL response (8), try again"},
        {"nothing behind the start", "41 01 >", "OFF", "Garbled MIL response (>), try again"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        run(Kind::read, {{"0101\r", litStatus}, {"03\r", codesReply}}); // leaves what must be replaced
        const auto errorsBefore = panel.labelStats.back();
        run(Kind::read, {{"0101\r", row.reply}});
        EXPECT_EQ(row.message.empty() ? "" : prompts.takeMessage(), row.message);
        EXPECT_EQ(panel.labelStats.back(), errorsBefore + (row.message.empty() ? 0 : 1)) << panel.labelStats;
        EXPECT_EQ(exchange.succeeded(), row.message.empty());
        EXPECT_EQ(panel.stateMIL, "Service Engine Soon Light is \r\n" + row.light);
        EXPECT_EQ(panel.diagCodeFrame, "Diagnostic (MIL) Codes");
        EXPECT_EQ(panel.codesOutput, "No codes reported");
        EXPECT_EQ(panel.readiness[5],
                  row.reply == "41 01 >" ? "Evaporative System input error" : "Evaporative System Test OK");
        EXPECT_FALSE(panel.clearCodes.enabled);
        EXPECT_EQ(panel.getCodes.caption, "Get Codes");
        EXPECT_EQ(panel.statusBox, "com1 Closed");
        EXPECT_EQ(values.lastFailureText, "");
    }
}

TEST_F(CodesExchangeTest, KeepsAReplyThatIsNoMonitorStatusForTheTroubleDialog)
{
    const std::pair<std::string, std::string> rows[] = {
        {"NO DATA\r\r>", "NO DATA\r\r>"},
        {"BUS INIT: ...ERROR\r\r>", "\r>"},
        {"SEARCHING...\r41 01 00 07 65 00 \r\r>", "SEARCHING...\r41 01 00 07 65 00 \r\r>"},
        {"41 00 BE 3F A8 13 \r\r>", "41 00 BE 3F A8 13 \r\r>"},
        {"41 01>", "41 01>"},
        {std::string("\0?\r>", 4), std::string("\0?\r>", 4)},
    };
    int errors = 0;
    for (const auto& [reply, kept] : rows) {
        run(Kind::read, {{"0101\r", reply}});
        EXPECT_EQ(prompts.takeMessage(), ignitionText);
        EXPECT_EQ(values.lastFailureText, kept);
        EXPECT_TRUE(panel.labelStats.ends_with(" Errors: " + std::to_string(++errors)));
        EXPECT_FALSE(exchange.succeeded());
        EXPECT_EQ(panel.stateMIL + panel.codesOutput, "") << "nothing of it is evaluated";
        EXPECT_EQ(panel.readiness, initialReadiness());
        EXPECT_EQ(panel.getCodes.caption, "Get Codes");
        EXPECT_EQ(panel.statusBox, "com1 Closed");
    }
}

TEST_F(CodesExchangeTest, AsksForCodesThatAreStoredWithTheLightOff)
{
    run(Kind::read, {{"0101\r", "41 01 7F 07 65 00 \r\r>"},
                     {"03\r", "43 01 33 03 01 04 20 \r43 04 21 00 00 00 00 \r\r>"}});
    EXPECT_EQ(panel.stateMIL, "Service Engine Soon Light is \r\nOFF");
    EXPECT_EQ(panel.diagCodeFrame, "Diagnostic (MIL) Codes: 127 code(s) reported");
    EXPECT_EQ(panel.codesOutput, "P0133\r\nP0301\r\nP0420\r\n") << "the first line only";

    driveTo(Kind::read, 0);
    EXPECT_EQ(panel.codesOutput, "") << "emptied when the next read begins";
    adapter.expect("ATD\r");
    press(Kind::read);
}

TEST_F(CodesExchangeTest, AddsDescriptionsToTheCodesThatHaveOne)
{
    descriptions.texts = {{"U0123", "Lost communication"}, {"P0301", "not stored"}};
    for (const int openings : {1, 2}) { // the database is open during a look-up only
        run(Kind::read, {{"0101\r", litStatus}, {"03\r", codesReply}});
        EXPECT_EQ(panel.codesOutput, "P0133\r\nU0123 Lost communication\r\n");
        EXPECT_EQ(descriptions.openings, openings);
    }
}

TEST_F(CodesExchangeTest, LooksForTheDatabaseWhenTheWindowOpens)
{
    descriptions.exists = false;
    CodesExchange without(adapter, timer, {}, descriptions, prompts, values);
    descriptions.exists = true; // too late
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
    run(Kind::read, {{"0101\r", litStatus}, {"03\r", codesReply}});
    EXPECT_EQ(prompts.takeMessage(), "damaged file");
    EXPECT_EQ(panel.codesOutput, "P0133\r\nU0123\r\n");
    EXPECT_EQ(panel.statusBox, "com1 Closed");

    descriptions.openFails = false;
    descriptions.texts = {{"P0133", "slow"}};
    descriptions.damagedAt = "U0123";
    run(Kind::read, {{"0101\r", litStatus}, {"03\r", codesReply}});
    EXPECT_EQ(prompts.takeMessage(), "damaged record");
    EXPECT_EQ(panel.codesOutput, "P0133 slow\r\nU0123\r\n");
    EXPECT_EQ(panel.statusBox, "com1 Closed");
}

TEST_F(CodesExchangeTest, ClearsTheCodesAfterTheQuestion)
{
    run(Kind::read, {{"0101\r", litStatus}, {"03\r", codesReply}});
    noteStatuses();
    run(Kind::clear, {{"0101\r", litStatus}, {"04\r", "44 \r\r>"}, {"0101\r", goodStatus}});

    ASSERT_EQ(prompts.questions().size(), 1U);
    EXPECT_EQ(prompts.questions()[0].title, "Verify OBD Reset");
    EXPECT_EQ(prompts.questions()[0].text, "Clearing the OBD will erase all diagnostic data and \r\n"
                                           "   may cause the vehicle to run poorly for a short \r\n"
                                           "   time while the system recalibrates. \r\n"
                                           "\r\n"
                                           " To clear the OBD, press OK");
    const std::vector<std::string> words = {"com1 Open", "com1 Init", "com1 Reading Data",
                                            "com1 Reading Data RESET", "com1 Closed"};
    EXPECT_EQ(statuses, words);
    EXPECT_EQ(panel.stateMIL, "Service Engine Soon Light is \r\nOFF");
    EXPECT_EQ(panel.codesOutput, "No codes reported");
    EXPECT_EQ(panel.clearCodes.caption, "Clear Codes");
    EXPECT_FALSE(panel.clearCodes.enabled);
    EXPECT_TRUE(exchange.succeeded());
}

TEST_F(CodesExchangeTest, ClearsNothingWhenTheQuestionIsDeclined)
{
    run(Kind::read, {{"0101\r", litStatus}, {"03\r", codesReply}});
    prompts.willAnswer(false);
    exchange.pressClearCodes();
    EXPECT_FALSE(adapter.isOpen());
    EXPECT_EQ(panel.clearCodes.caption, "         Clear MIL          Reset data");
    EXPECT_EQ(panel.codesOutput, "P0133\r\nU0123\r\n");
    run(Kind::read, {{"0101\r", litStatus}, {"03\r", codesReply}});
}

TEST_F(CodesExchangeTest, SendsNoClearToAVehicleWithoutCodes)
{
    run(Kind::clear, {{"0101\r", goodStatus}});
    EXPECT_EQ(panel.clearCodes.caption, "Clear Codes");
    EXPECT_EQ(panel.codesOutput, "No codes reported");
    run(Kind::read, {{"0101\r", litStatus}, {"03\r", codesReply}});
}

TEST_F(CodesExchangeTest, ListsTheCodesThatRemainAfterAClear)
{
    run(Kind::clear, {{"0101\r", litStatus},
                      {"04\r", "7F 04 22 \r\r>"},
                      {"0101\r", "41 01 81 07 65 00 \r\r>"},
                      {"03\r", "43 03 01 00 00 00 00 \r\r>"}});
    EXPECT_EQ(panel.codesOutput, "P0301\r\n");
    EXPECT_EQ(panel.diagCodeFrame, "Diagnostic (MIL) Codes: 1 code(s) reported");
    EXPECT_EQ(panel.getCodes.caption, "Get Codes") << "the exchange ends as a read";
    EXPECT_EQ(panel.clearCodes.caption, "Clear Codes");
    EXPECT_TRUE(panel.clearCodes.enabled);
    EXPECT_EQ(panel.statusBox, "com1 Closed");
}

TEST_F(CodesExchangeTest, EndsAClearThatFailsWithItsOwnButton)
{
    run(Kind::clear, {{"0101\r", "UNABLE TO CONNECT\r\r>"}});
    EXPECT_EQ(prompts.takeMessage(), ignitionText);
    EXPECT_EQ(panel.clearCodes.caption, "Clear Codes");
    EXPECT_EQ(panel.getCodes.caption, "Get Engine Data");
    EXPECT_FALSE(exchange.succeeded());
}

TEST_F(CodesExchangeTest, WaitsUntilItIsCancelledInEachState)
{
    inEachState([this](Kind kind, std::size_t answered) {
        EXPECT_EQ(timer.enabled(), answered == 0) << "the reset alone is guarded";
        if (answered > 0)
            timer.tick();
        if (kind == Kind::clear && answered == 4) {
            EXPECT_FALSE(panel.clearCodes.enabled) << "cleared; what is left is not known yet";
        }
        const bool endsAsRead = kind == Kind::read || answered > 3;
        EXPECT_EQ((kind == Kind::read ? panel.getCodes : panel.clearCodes).caption == "Cancel",
                  kind == Kind::read || answered <= 3);
        adapter.expect("ATD\r").answer("OK\r\r>");
        press(endsAsRead ? Kind::read : Kind::clear);
        adapter.play();
        EXPECT_EQ(panel.statusBox, "com1 Closed");
        EXPECT_EQ((endsAsRead ? panel.getCodes : panel.clearCodes).caption,
                  endsAsRead ? "Get Codes" : "Clear Codes");
    });
    EXPECT_TRUE(panel.labelStats.ends_with(" Errors: 0")) << "cancelling is no error";
}

TEST_F(CodesExchangeTest, TellsWhenTheAdapterDoesNotAnswerTheReset)
{
    for (const Kind kind : {Kind::read, Kind::clear}) {
        values.lastFailureText.clear();
        driveTo(kind, 0);
        adapter.expect("ATD\r");
        timer.tick();
        EXPECT_EQ(prompts.takeMessage(), timeoutText);
        EXPECT_EQ(values.lastFailureText, "Timeout responding to ATZ");
        EXPECT_EQ(panel.statusBox, "com1 Closed");
        EXPECT_EQ(panel.getCodes.caption, "Get Codes");
        EXPECT_EQ(panel.clearCodes.caption == "Clear Codes", kind == Kind::clear);
        EXPECT_TRUE(panel.labelStats.ends_with(kind == Kind::read ? " Errors: 1" : " Errors: 2"));
        EXPECT_FALSE(exchange.succeeded());
        timer.tick();
        expectStartsAgain();
    }
}

TEST_F(CodesExchangeTest, EndsWhenTheDeviceVanishesInAnyState)
{
    int errors = 0;
    inEachState([&](Kind, std::size_t) {
        adapter.vanish();
        EXPECT_EQ(panel.statusBox, "com1 - adapter disconnected");
        EXPECT_TRUE(panel.labelStats.ends_with(" Errors: " + std::to_string(++errors))) << panel.labelStats;
        timer.tick();
        press(Kind::read);
        EXPECT_EQ(panel.statusBox, "com1 - Comm init error: 2: No such file or directory");
    });
}

TEST_F(CodesExchangeTest, LeavesCaptionsAndTimerWhenThePortCannotBeOpened)
{
    for (const bool afterARead : {false, true}) {
        SCOPED_TRACE(afterARead);
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
    adapter.expect("ATD\r");
    press(Kind::read);
    EXPECT_TRUE(panel.labelStats.ends_with(" Errors: 1"));
}

TEST_F(CodesExchangeTest, HandlesNothingWhileAMessageIsOpen)
{
    prompts.whileOpen([this] {
        adapter.receive(litStatus);
        adapter.expect("ATZ\r");
        gate.run([this] { exchange.pressGetCodes(); });
        EXPECT_EQ(panel.getCodes.caption, "Cancel") << "the press waits";
        EXPECT_TRUE(adapter.isOpen());
    });
    run(Kind::read, {{"0101\r", "NO DATA\r\r>"}});
    EXPECT_EQ(prompts.takeMessage(), ignitionText);
    EXPECT_EQ(values.lastFailureText, "NO DATA\r\r>");
    EXPECT_EQ(panel.stateMIL, "") << "what arrived meanwhile belongs to no exchange";
    EXPECT_EQ(panel.statusBox, "com1 Open") << "the waiting press began the next one";
    adapter.expect("ATD\r");
    press(Kind::read);
}

TEST_F(CodesExchangeTest, ClosesThePortWhenTheWindowGoesAway)
{
    driveTo(Kind::read, 0);
    adapter.expect("ATD\r");
    exchange.unload();
    EXPECT_EQ(adapter.history().back(), "close");
    EXPECT_FALSE(timer.enabled());
    exchange.unload(); // nothing more to close
}

} // namespace
} // namespace zint
