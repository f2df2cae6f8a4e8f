#include "codes/codesExchange.h"
#include "dtcdb/dtcDatabase.h"
#include "support/manualTime.h"
#include "support/scriptedAdapter.h"
#include "support/scriptedPrompts.h"

#include <map>
#include <memory>

namespace zint {
namespace {

constexpr const char* ignitionText =
    "Please try again, ignition must be ON.  If ignition is ON, see fails-to-connect under Help.";
constexpr const char* timeoutText = "OBD is not responding... Please verify connections between computer and "
                                    "vehicle. See fails-to-respond under Help.";
constexpr const char* damaged = "(damaged)"; ///< reading this description fails

/// Descriptions in a map; what is opened is a copy.
struct MapDescriptions final : CodeDescriptionSource, CodeDescriptions {
    std::map<std::string, std::string, std::less<>> texts;
    bool exists = true;
    bool openFails = false;
    mutable int openings = 0;

    bool available() const override { return exists; }
    std::unique_ptr<CodeDescriptions> open() const override
    {
        ++openings;
        return openFails ? throw DatabaseError("damaged file") : std::make_unique<MapDescriptions>(*this);
    }
    std::optional<std::string> describe(std::string_view code) override
    {
        const auto found = texts.find(code);
        if (found == texts.end())
            return std::nullopt;
        return found->second == damaged ? throw DatabaseError("damaged record") : found->second;
    }
};

constexpr const char* litScreen = "Service Engine Soon Light is \r\nON|"
                                  "Diagnostic (MIL) Codes: 2 code(s) reported|P0133\r\nU0123\r\n";

enum class Kind { read, clear };

using Conversation = std::vector<std::pair<std::string, std::string>>; ///< requests with their replies
using Texts = std::vector<std::string>;

// What follows the opening with a lit vehicle, and with one that keeps its codes when they are cleared.
const std::string litStatus = "41 01 82 07 65 04 \r\r>";
const Conversation reading = {{"0101\r", litStatus}, {"03\r", "43 01 33 C1 23 00 00 \r\r>"}};
const Conversation clearing = {{"0101\r", litStatus}, {"04\r", "44 \r\r>"}, reading[0], reading[1]};

struct CodesExchangeTest : testing::Test {
    EventGate gate;
    ScriptedAdapter adapter{&gate};
    ManualTimer timer;
    MapDescriptions descriptions;
    ScriptedPrompts prompts;
    ProgramValues values;
    CodesExchange exchange{adapter, timer, {}, descriptions, prompts, values};
    const CodesPanel& panel = exchange.panel();
    Texts statuses; ///< each status shown

    CodesExchangeTest()
    {
        exchange.onChanged = [this] {
            if (statuses.empty() || statuses.back() != panel.statusBox)
                statuses.push_back(panel.statusBox);
        };
    }

    void press(Kind kind)
    {
        if (kind == Kind::clear && !adapter.isOpen())
            prompts.answer = true;
        kind == Kind::read ? exchange.pressGetCodes() : exchange.pressClearCodes();
    }

    /// Starts an exchange in which so many requests are answered, the two of the opening among them; the next
    /// is sent and stays unanswered.
    void driveTo(Kind kind, std::size_t answered, const Conversation& requests)
    {
        Conversation all = {{"ATZ\r", "ATZ\r\r\rELM327 v1.5\r\r>"}, {"ATE0\r", "ATE0\rOK\r\r>"}};
        all.insert(all.end(), requests.begin(), requests.end());
        for (std::size_t i = 0; i < answered; ++i)
            adapter.expect(all[i].first).answer(all[i].second, i + 1); // in pieces
        if (answered < all.size())
            adapter.expect(all[answered].first);
        press(kind);
        adapter.play();
    }

    /// Runs a whole exchange.
    void run(Kind kind, Conversation requests)
    {
        requests.emplace_back("ATD\r", "OK\r\r>");
        driveTo(kind, 2 + requests.size(), requests);
        EXPECT_EQ(panel.statusBox, "com1 Closed");
    }

    void expectStartsAgain()
    {
        adapter.workAgain();
        run(Kind::read, reading);
        EXPECT_TRUE(exchange.succeeded());
        EXPECT_EQ(shown(), litScreen);
    }

    const std::string& caption(Kind kind) const
    {
        return (kind == Kind::read ? panel.getCodes : panel.clearCodes).caption;
    }

    /// Both captions, that of a disabled button in round brackets.
    std::string buttons() const
    {
        const auto text = [](const Button& button) {
            return button.enabled ? "[" + button.caption + "]" : "(" + button.caption + ")";
        };
        return text(panel.getCodes) + " " + text(panel.clearCodes);
    }

    std::string shown() const { return panel.stateMIL + "|" + panel.diagCodeFrame + "|" + panel.codesOutput; }
};

TEST_F(CodesExchangeTest, ReadsTheCodesOfALitVehicle)
{
    EXPECT_EQ(buttons(), "[Get Engine Data] (         Clear MIL          Reset data)");
    run(Kind::read, reading);
    EXPECT_EQ(statuses, (Texts{"com1 Open", "com1 Init", "com1 Reading Data", "com1 Closed"}));
    EXPECT_EQ(shown(), litScreen);
    EXPECT_EQ(buttons(), "[Get Codes] [         Clear MIL          Reset data]");
    EXPECT_EQ(panel.readiness[5], "Evaporative System Test Incomplete");
    EXPECT_EQ(panel.labelStats, "Bytes In: 75 Out: 21 Errors: 0");
    EXPECT_TRUE(exchange.succeeded());
    EXPECT_EQ(exchange.reportedCodeCount(), 2);
}

TEST_F(CodesExchangeTest, EvaluatesAMonitorStatusWithoutCodes)
{
    const struct {
        const char* name;
        std::string reply;
        std::string light = "OFF";
        std::string message;
    } rows[] = {
        {"light off", "41 01 00 07 65 00 \r\r>"},
        {"light on without a code", "41 01 80 07 65 00 \r\r>", "ON"},
        {"behind a bus initialisation", "BUS INIT: OK\r\n41 01 00 07 65 00 \r\n\r\n>"},
        {"two blanks read as 0", "41 01    07 65 00 \r\r>"},
        {"first digit garbled", "41 01 G0 07 65 00 \r\r>", "OFF", "Garbled MIL response (G), try again"},
        {"second digit garbled", "41 01 8? 07 65 00 \r\r>", "OFF", "Garbled MIL response (8), try again"},
        {"nothing behind the start", "41 01 >", "OFF", "Garbled MIL response (>), try again"},
    };
    for (const auto& [name, reply, light, message] : rows) {
        SCOPED_TRACE(name);
        run(Kind::read, reading); // leaves what must be replaced
        const char errorsBefore = panel.labelStats.back();
        run(Kind::read, {{"0101\r", reply}});
        EXPECT_EQ(prompts.takeMessage(), message);
        EXPECT_EQ(panel.labelStats.back(), errorsBefore + (message.empty() ? 0 : 1)) << panel.labelStats;
        EXPECT_EQ(exchange.succeeded(), message.empty());
        EXPECT_EQ(shown(),
                  "Service Engine Soon Light is \r\n" + light + "|Diagnostic (MIL) Codes|No codes reported");
        EXPECT_EQ(panel.readiness[0], reply == "41 01 >" ? "Misfire input error" : "Misfire Test OK");
        EXPECT_EQ(buttons(), "[Get Codes] (         Clear MIL          Reset data)");
        EXPECT_EQ(values.lastFailureText, "");
    }
}

TEST_F(CodesExchangeTest, KeepsAReplyThatIsNoMonitorStatusForTheTroubleDialog)
{
    int errors = 0;
    for (const std::string reply :
         {"NO DATA\r\r>", "41 00 BE 3F A8 13 \r\r>", "41 01>", "BUS INIT: ...ERROR\r\r>"}) {
        run(Kind::clear, {{"0101\r", reply}});
        EXPECT_EQ(prompts.takeMessage(), ignitionText);
        EXPECT_EQ(values.lastFailureText, reply.starts_with("BUS") ? ">" : reply);
        EXPECT_TRUE(panel.labelStats.ends_with(" Errors: " + std::to_string(++errors)));
        EXPECT_FALSE(exchange.succeeded());
        EXPECT_EQ(shown(), "|Diagnostic (MIL) Codes|") << "nothing of it is evaluated";
        EXPECT_EQ(panel.readiness, initialReadiness());
        EXPECT_EQ(buttons(), "[Get Engine Data] (Clear Codes)") << "it ends with its own button";
    }
}

TEST_F(CodesExchangeTest, AsksForCodesThatAreStoredWithTheLightOff)
{
    run(Kind::read, {{"0101\r", "41 01 7F 07 65 00 \r\r>"},
                     {"03\r", "43 01 33 03 01 04 20 \r43 04 21 00 00 00 00 \r\r>"}});
    EXPECT_EQ(shown(), "Service Engine Soon Light is \r\nOFF|Diagnostic (MIL) Codes: 127 code(s) reported|"
                       "P0133\r\nP0301\r\nP0420\r\n")
        << "the first line only";

    driveTo(Kind::read, 0, {});
    EXPECT_EQ(panel.codesOutput, "") << "emptied when the next read begins";
    adapter.expect("ATD\r");
    exchange.unload(); // as when the window goes away
    EXPECT_EQ(adapter.history.back(), "close");
}

TEST_F(CodesExchangeTest, AddsDescriptionsToTheCodesThatHaveOne)
{
    descriptions.texts = {{"U0123", "Lost communication"}, {"P0301", "not stored"}};
    for (const int openings : {1, 2}) { // the database is open during a look-up only
        run(Kind::read, reading);
        EXPECT_EQ(panel.codesOutput, "P0133\r\nU0123 Lost communication\r\n");
        EXPECT_EQ(descriptions.openings, openings);
    }

    descriptions.texts = {{"P0133", "slow"}, {"U0123", damaged}};
    run(Kind::read, reading);
    EXPECT_EQ(prompts.takeMessage(), "damaged record");
    EXPECT_EQ(panel.codesOutput, "P0133 slow\r\nU0123\r\n") << "the codes are listed all the same";

    descriptions.openFails = true;
    run(Kind::read, reading);
    EXPECT_EQ(prompts.takeMessage(), "damaged file");
    EXPECT_EQ(shown(), litScreen);

    descriptions.exists = false;
    CodesExchange without(adapter, timer, {}, descriptions, prompts, values);
    descriptions.exists = true; // too late: it looks when the window opens
    adapter.expectOpening();
    for (const auto& [request, reply] : reading)
        adapter.expect(request).answer(reply);
    adapter.expect("ATD\r");
    without.pressGetCodes();
    adapter.play();
    EXPECT_EQ(descriptions.openings, 4);
}

TEST_F(CodesExchangeTest, ClearsTheCodesAfterTheQuestion)
{
    prompts.answer = false;
    exchange.pressClearCodes();
    EXPECT_FALSE(adapter.isOpen());
    EXPECT_EQ(prompts.question, "Verify OBD Reset\n"
                                "Clearing the OBD will erase all diagnostic data and \r\n"
                                "   may cause the vehicle to run poorly for a short \r\n"
                                "   time while the system recalibrates. \r\n"
                                "\r\n"
                                " To clear the OBD, press OK");
    EXPECT_EQ(buttons(), "[Get Engine Data] (         Clear MIL          Reset data)");

    run(Kind::read, reading);
    statuses.clear();
    const std::pair<std::string, std::string> goodStatus = {"0101\r", "41 01 00 07 65 00 \r\r>"};
    run(Kind::clear, {clearing[0], clearing[1], goodStatus});
    EXPECT_EQ(statuses, (Texts{"com1 Open", "com1 Init", "com1 Reading Data", "com1 Reading Data RESET",
                               "com1 Closed"}));
    EXPECT_EQ(shown(), "Service Engine Soon Light is \r\nOFF|Diagnostic (MIL) Codes|No codes reported");
    EXPECT_EQ(buttons(), "[Get Codes] (Clear Codes)");
    EXPECT_TRUE(exchange.succeeded());
    run(Kind::clear, {goodStatus}); // no clear is sent to a vehicle without codes
    expectStartsAgain();
}

TEST_F(CodesExchangeTest, ListsTheCodesThatRemainAfterAClear)
{
    const Conversation::value_type status = {"0101\r", "41 01 81 07 65 00 \r\r>"};
    run(Kind::clear, {status, {"04\r", "7F 04 22 \r\r>"}, status, {"03\r", "43 03 01 00 00 00 00 \r\r>"}});
    EXPECT_EQ(shown(),
              "Service Engine Soon Light is \r\nON|Diagnostic (MIL) Codes: 1 code(s) reported|P0301\r\n");
    EXPECT_EQ(buttons(), "[Get Codes] [Clear Codes]");
}

TEST_F(CodesExchangeTest, EndsInEachStateWhenItIsCancelledOrTheDeviceVanishesOrTheResetTimesOut)
{
    int errors = 0;
    const auto end = [&](Kind now, std::size_t answered, std::size_t way) {
        EXPECT_EQ(timer.enabled(), answered == 0) << "the reset alone is guarded";
        if (answered > 0)
            timer.tick();
        EXPECT_TRUE(answered != 4 || !panel.clearCodes.enabled) << "what a clear left is not known yet";
        errors += way == 0 ? 0 : 1;
        if (way == 1) {
            adapter.vanish();
            EXPECT_EQ(panel.statusBox, "com1 - adapter disconnected");
        } else {
            adapter.expect("ATD\r").answer("OK\r\r>");
            way == 0 ? press(now) : timer.tick();
            adapter.play();
            EXPECT_EQ(panel.statusBox, "com1 Closed");
        }
        EXPECT_EQ(prompts.takeMessage(), way == 2 ? timeoutText : "");
        EXPECT_EQ(std::exchange(values.lastFailureText, {}), way == 2 ? "Timeout responding to ATZ" : "");
        EXPECT_EQ(caption(now), now == Kind::read ? "Get Codes" : "Clear Codes");
        EXPECT_FALSE(exchange.isRunning() || exchange.succeeded() || timer.enabled());
    };
    for (const Kind kind : {Kind::read, Kind::clear}) {
        const Conversation& requests = kind == Kind::read ? reading : clearing;
        for (std::size_t step = 0; step < 3 * (2 + requests.size()); ++step) {
            SCOPED_TRACE((kind == Kind::read ? "read, step " : "clear, step ") + std::to_string(step));
            const std::size_t answered = step / 3;
            if (answered > 0 && step % 3 == 2)
                continue; // no time-out
            driveTo(kind, answered, requests);
            // The second half of a clear is a read, and ends as one.
            const Kind now = answered > 3 ? Kind::read : kind;
            EXPECT_EQ(caption(kind) == "Cancel", now == kind);
            end(now, answered, step % 3);
            expectStartsAgain();
            EXPECT_TRUE(panel.labelStats.ends_with(" Errors: " + std::to_string(errors))) << panel.labelStats;
        }
    }
}

TEST_F(CodesExchangeTest, LeavesCaptionsAndTimerWhenThePortCannotBeOpened)
{
    adapter.openError = CommError(16, "Device or resource busy");
    for (const Kind kind : {Kind::read, Kind::clear}) {
        press(kind);
        EXPECT_EQ(panel.statusBox, "com1 - Comm init error: 16: Device or resource busy");
        EXPECT_EQ(buttons(), "[Get Engine Data] (         Clear MIL          Reset data)");
        EXPECT_FALSE(timer.enabled() || exchange.succeeded());
    }
    expectStartsAgain();
}

TEST_F(CodesExchangeTest, ShowsAnEventThatTheDriverDoesNotExplainAndPassesOverLineEvents)
{
    driveTo(Kind::read, 2, reading);
    for (const int event : {1, 3, 7, 1001, 1006, 1009})
        adapter.sendEvent(event);
    EXPECT_EQ(panel.statusBox, "com1 Reading Data");
    adapter.sendEvent(commEvent::unknown);
    EXPECT_EQ(statuses.back(), "com1 Reading Data - unhandled comm Event: 0") << "repainted at once";
    EXPECT_TRUE(panel.labelStats.ends_with(" Errors: 0")) << "refreshed with the next reply";
    adapter.expect("ATD\r");
    press(Kind::read);
    EXPECT_TRUE(panel.labelStats.ends_with(" Errors: 1"));
}

TEST_F(CodesExchangeTest, HandlesNothingWhileAMessageIsOpen)
{
    prompts.whileOpen = [this] {
        adapter.receive(litStatus);
        adapter.expect("ATZ\r");
        gate.run([this] { exchange.pressGetCodes(); });
        EXPECT_EQ(panel.getCodes.caption, "Cancel") << "the press waits";
    };
    driveTo(Kind::read, 4, {{"0101\r", "NO DATA\r\r>"}, {"ATD\r", ""}});
    EXPECT_EQ(prompts.takeMessage(), ignitionText);
    EXPECT_EQ(panel.stateMIL, "") << "what arrived meanwhile belongs to no exchange";
    EXPECT_EQ(panel.statusBox, "com1 Open") << "the waiting press began the next one";
    adapter.expect("ATD\r");
    press(Kind::read);
}

} // namespace
} // namespace zint
