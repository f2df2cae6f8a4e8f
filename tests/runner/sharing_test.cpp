#include "catalogue/ownParameter.h"
#include "pollerTest.h"
#include "runner/addressCommands.h"

#include <algorithm>
#include <sstream>

namespace zint {
namespace {

/// Requests that tell of several events, and those under headers of their own.
struct SharingTest : PollerTest {
    /// Starts a run, and goes through requests and their replies without line ends: "010C=41 0C 1A F8;010D".
    void follow(const std::string& exchange)
    {
        adapter.expectOpening();
        std::istringstream stream(exchange);
        for (std::string step; std::getline(stream, step, ';');) {
            const auto mark = std::min(step.find('='), step.size());
            const std::string reply = step.substr(std::min(mark + 1, step.size()));
            adapter.expect(step.substr(0, mark) + "\r").answer(reply.empty() ? "" : reply + " \r\r>");
        }
        poller->pressStart();
        adapter.play();
    }

    /// The last values and bad replies of the events: "6904, 50, 2 bad".
    std::string outcome() const
    {
        std::string text;
        for (const EventTotals& event : poller->samples().events()) {
            text += text.empty() ? "" : ", ";
            text += event.sampleCount > 0 ? std::to_string(std::lround(event.current)) : "-";
            if (event.errorCount > 0)
                text += ' ' + std::to_string(event.errorCount) + " bad";
        }
        return text;
    }
};

const std::string asksFirst = "0100=41 00 BE 1F A8 13;ATDPN=";

TEST_F(SharingTest, AsksTogetherWhatVehicleAndAdapterTakeTogether)
{
    struct Row {
        const char* what;
        const char* protocol;
        const char* exchange; ///< up to the first request of the second loop
        const char* values;
        const char* status;
    };
    const Row rows[] = {
        {"all at once", "A6", "010C0D05=008 \r0: 41 0C 1A F8 0D 32 \r1: 05 7B AA AA AA AA AA;010C0D05",
         "6904, 50, 123", " Polling"},
        {"in another order, from two units", "6", "010C0D05=41 05 7B 0C 1A F8 \r41 0D 32 0C 00 00;010C0D05",
         "6904, 50, 123", " Polling"},
        {"from two units: the one that tells most counts", "6",
         "010C0D05=41 0D 11 05 22 \r008 \r0: 41 0C 1A F8 0D 32 \r1: 05 7B AA AA AA AA AA;010C0D05",
         "6904, 50, 123", " Polling"},
        {"no protocol is told: it is tried", "?",
         "010C0D05=008 \r0: 41 0C 1A F8 0D 32 \r1: 05 7B AA AA AA AA AA;010C0D05", "6904, 50, 123",
         " Polling"},
        {"refused", "6", "010C0D05=7F 01 12;010C=41 0C 1A F8;010D=41 0D 32;01 05=41 05 7B;010C",
         "6904, 50, 123", "3 events are asked alone"},
        {"the first one only", "6", "010C0D05=41 0C 1A F8;010D=41 0D 32;01 05=41 05 7B;010C", "6904, 50, 123",
         "2 events are asked alone"},
        {"a line is lost", "6", "010C0D05=008 \r0: 41 0C 1A F8 0D 32;010C=41 0C 1A F8;010D", "6904, -, -",
         "3 events are asked alone"},
        {"one that this vehicle does not have", "6", "010C0D05=41 0C 1A F8 05 7B;010D=NO DATA;010C05",
         "6904, - 1 bad, 123", "1 event is asked alone"},
        {"the adapter takes no long commands", "6", "010C0D05=?;010C=41 0C 1A F8;010D", "6904, -, -",
         "3 events are asked alone"},
        {"no CAN", "A3", "010C=41 0C 1A F8;010D", "6904, -, -", "the vehicle is not on CAN"},
    };
    for (const auto& [what, protocol, exchange, expected, status] : rows) {
        SCOPED_TRACE(what);
        makePoller({every(1, "010C"), every(1, "010D"), every(1, "01 05")});
        poller->letCombine(true);
        follow(asksFirst + protocol + ";" + exchange);
        EXPECT_EQ(outcome(), expected);
        EXPECT_TRUE(panel().statusBox.ends_with(status)) << panel().statusBox;
        pressStop();
    }
}

TEST_F(SharingTest, SharedRepliesThatFailLaterAreBadAndWaitForBetterTimes)
{
    makePoller({every(1, "010C"), every(2, "0104"), every(1, "010D")});
    poller->letCombine(true);
    follow(asksFirst + "6;010C040D=008 \r0: 41 0C 1A F8 04 FF \r1: 0D 32 AA AA;"
                       "010C0D=41 0C 1A F8 0D 32;010C040D=NO DATA;010C0D=41 0C 1A;010C040D=CAN ERROR;"
                       "010C0D=NO DATA;" // was on its way
                       "010C");
    EXPECT_EQ(outcome(), "6904 4 bad, 255 2 bad, 50 4 bad");
    EXPECT_EQ(poller->noDataCount(), 2);
    EXPECT_TRUE(panel().statusBox.ends_with("2 events are asked alone")) << panel().statusBox;
    for (const char* pid : {"04", "0D", "0C", "0D"})
        adapter.expect("01" + std::string(pid) + "\r").answer("41 " + std::string(pid) + " 1A F8 \r\r>");
    adapter.expect("010C040D\r");
    adapter.receive("41 0C 1A F8 \r\r>"); // the vehicle is there again
    adapter.play();
    EXPECT_TRUE(panel().statusBox.ends_with(" Polling")) << panel().statusBox;
}

TEST_F(SharingTest, AnEventThatJoinsLaterTakesNobodyAlong)
{
    makePoller({every(1, "010C"), every(2, "0105", 1), every(1, "010D")});
    poller->letCombine(true);
    follow(asksFirst + "6;010C0D=41 0C 1A F8 0D 32;010C050D=CAN ERROR;"
                       "010C0D=41 0C 1A F8 0D 32;0105=41 05 7B;010C0D");
    EXPECT_EQ(outcome(), "6904, 123, 50");
    pressStop();
    EXPECT_NE(panel().labelStats.find("Out: 59 "), std::string::npos) << "all that was sent, with its ends";
}

TEST_F(SharingTest, StopsInTheFirstSharedReplyWhenThereIsNoRoom)
{
    makePoller({every(1, "010C"), every(1, "010D")}, 3);
    poller->letCombine(true);
    follow(asksFirst + "6;010C0D=41 0C 1A F8 0D 32;ATD");
    EXPECT_TRUE(prompts.takeMessage().starts_with("There is no memory for more samples"));
    EXPECT_FALSE(poller->isPolling());
    EXPECT_EQ(outcome(), "6904, -");
}

/// Fields of the standard are read by its table, from one request and one reply for all that have one.
TEST_F(SharingTest, ReadsTheStandardsFieldsAsTheVehicleScalesThem)
{
    const auto field = [](const char* code, std::int32_t conversion) {
        return DesignEntry{.code = code, .conversion = conversion, .frequency = 1};
    };
    makePoller({field("0114", 1201), field("0114", 1200), field("0103", 1030), field("0134", 1521),
                field("010C", 5), field("0106", 1061)});
    follow("0100=41 00 BE 1F A8 13;014F=41 4F 00 00 20 00 <DATA ERROR;014F=41 4F 00 00 40 00;"
           "0114=41 14 5A FF;" // which tells of two events
           "0103=41 03 02 00;0134=41 34 80 00 00 00;010C=41 0C 1A F8;0106=41 06 7C AA AA AA;"
           "0114=41 14 5A 80;" // was not used for trim
           "0103=7F 01 12;0134=7F 01 12;010C=41 0C 1A F8;0106=7F 01 12;0114=7F 01 12;0103=7F 01 12;"
           "0134");
    EXPECT_EQ(outcome(), "0 1 bad, 0 1 bad, 2 2 bad, -64 1 bad, 6904, - 1 bad")
        << "the current by the scale of 4F";
    EXPECT_FALSE(poller->sawMismatch()) << "the vehicle's word contradicts nothing";
    pressStop();
    EXPECT_EQ(panel().obdGrid[0].value, "0.0 %");
    EXPECT_EQ(panel().obdGrid[0].samples, "1");
    EXPECT_EQ(panel().obdGrid[3].maximum, "-64.000 mA");
    EXPECT_EQ(panel().obdGrid[1].value, "0.450 V");
    EXPECT_EQ(panel().obdGrid[2].value + panel().obdGrid[2].minimum, "closed loop");
    EXPECT_EQ(panel().obdGrid[4].value, "1726rpm");
    EXPECT_EQ(panel().obdGrid[5].value, "not supported") << "padding is no second bank";
    poller->resetValues();
    for (const PollPanel::Row& row : panel().obdGrid)
        EXPECT_EQ(row.value + row.minimum + row.maximum,
                  &row == &panel().obdGrid[4] ? "0rpm16384rpm0rpm" : "");
}

DesignEntry own(const char* code, const char* formula, const char* header, const char* filter = "")
{
    const OwnParameter parameter{.number = 10000,
                                 .request = code,
                                 .header = header,
                                 .filter = filter,
                                 .formula = formula,
                                 .unit = "V"};
    return {.code = code,
            .conversion = parameter.number,
            .frequency = 1,
            .own = std::make_shared<const OwnParameter>(parameter)};
}

TEST_F(SharingTest, SetsHeaderAndFilterWhereTheyChange)
{
    makePoller({every(1, "010C"), own("221940", "A-40", "7E1"), every(2, "010D"),
                own("22F40C", "100/A", "744", "74C"), own("2101", "B", "7E1")});
    follow(asksFirst + "A6;010C=41 0C 1A F8;010D=41 0D 32;ATSH 7E1=OK;"
                       "221940=62 19 40 8C;2101=61 01 00 07;ATSH 744=OK;ATCRA 74C=OK;22F40C=62 F4 0C 00;"
                       "ATSH 7DF=OK;ATCRA=?;" // older adapters know another way
                       "ATAR=OK;010C=41 0C 1A F8;ATSH 7E1=?;ATSH 7E1=OK;2101");
    EXPECT_EQ(outcome(), "6904, 100 1 bad, 50, -, 7");
    const std::size_t sent =
        std::string("ATZ|ATE0|0100|ATDPN|010C|010D|ATSH 7E1|221940|2101|ATSH 744|ATCRA 74C|"
                    "22F40C|ATSH 7DF|ATCRA|ATAR|010C|ATSH 7E1|ATSH 7E1|2101|")
            .size();
    adapter.expect("ATD\r");
    poller->pressStart();
    EXPECT_EQ(panel().labelStats.substr(panel().labelStats.find("Out")),
              "Out: " + std::to_string(sent + 4) + " Err: 1");
    EXPECT_EQ(panel().obdGrid[1].value, "the adapter refuses ATSH 7E1");
    EXPECT_EQ(panel().obdGrid[3].value, "division by zero");
}

TEST_F(SharingTest, AFilterThatIsRefusedIsInNobodysWay)
{
    makePoller({every(1, "010C"), own("22F40C", "A", "744", "74C")});
    follow(asksFirst + "A6;010C=41 0C 1A F8;ATSH 744=OK;ATCRA 74C=?;ATSH 7DF=OK;"
                       "010C");
    EXPECT_EQ(outcome(), "6904, - 1 bad");
    pressStop();
    design.events[1] = own("22F40C", "A", "745");
    follow(asksFirst + "A6;010C=41 0C 1A F8;ATSH 745");
}

TEST_F(SharingTest, RefusalsAreNoRepliesToOtherRequests)
{
    makePoller({own("221940", "A", ""), own("221941", "A", ""), own("221942", "A", "")});
    for (const char* reply : {"7F 22 31", "62 19 43 01"}) {
        std::string exchange;
        for (const char* request : {"221940", "221941", "221942", "221940"})
            exchange += std::string(request) + "=" + reply + ";";
        follow(exchange + "221941");
        EXPECT_EQ(poller->sawMismatch(), *reply == '6');
        pressStop();
    }
}

TEST(PollPlanTest, PutsTogetherWhatFits)
{
    std::vector<DesignEntry> events = {own("010C", "A", "7E1"), own("0105", "A", "7E1")};
    for (const char* code :
         {"010C", "0105", "010D", "01 0f", "01F0", "0902", "01101", "0111", "0104", "010C"})
        events.push_back(every(1, code));
    const Design design = designOf(events);
    PollPlan plan(design);
    plan.combine(true);
    std::string asked;
    for (Turn turn{.loop = 0, .event = 0}; turn.loop < 2; turn = plan.next(turn)) {
        const PollRequest request = plan.request(turn);
        asked += request.text + ':' + std::to_string(request.events.size()) + ' ';
    }
    const std::string pass = "010C05:2 010C050D0F1011:7 01F0:1 0902:1 0104:1 ";
    EXPECT_EQ(asked, pass + pass);
}

TEST_F(SharingTest, AnAdapterThatBeginsAnewGetsItsSettingsBeforeAnythingElse)
{
    struct Row {
        std::string exchange;
        const char* next;
        const char* values;
    };
    const Row rows[] = {
        {"010C0D=41 0C 1A F8 0D 32 \rLV RESET", "010C0D", "-, -, -"},
        {"010C0D=41 0C 1A F8 0D 32;ATSH 7E1=LV RESET", "ATSH 7E1", "6904, 50, -"},
        {"010C0D=41 0C 1A F8 0D 32;ATSH 7E1=OK;221940=62 19 40 8C \rLV RESET;ATSH 7DF=OK", // was on its way
         "010C0D", "6904, 50, - 1 bad"},
    };
    for (const auto& [exchange, next, expected] : rows) {
        makePoller({every(1, "010C"), every(1, "010D"), own("221940", "A", "7E1")});
        poller->letCombine(true);
        poller->letReconnect(std::chrono::seconds(60));
        follow(asksFirst + "A6;" + exchange + ";ATZ=ELM327 v1.5;ATE0=OK;" + asksFirst + "A6;" + next);
        EXPECT_EQ(outcome(), expected);
        pressStop();
    }
}

TEST(AddressCommandsTest, LeadBackToWhatTheAdapterHadBefore)
{
    struct Row {
        const char* extra;
        BusProtocol protocol;
        std::deque<std::string> back;
    };
    const Row rows[] = {
        {"", BusProtocol::can29At500, {"ATCP 18", "ATSH DB33F1", "ATCRA"}},
        {"ATCP 1C", BusProtocol::can29At250, {"ATCP 1C", "ATSH DB33F1", "ATCRA"}},
        {"atcp 1c;at sh da 10 f1", BusProtocol::can29At500, {"ATCP 1C", "ATSH DA10F1", "ATCRA"}},
        {"ATSH 18DA10F1", BusProtocol::can29At500, {"ATCP 18", "ATSH DA10F1", "ATCRA"}},
        {"ATSH 7E0;ATCRA 7E8", BusProtocol::can11At500, {"ATSH 7E0", "ATCRA 7E8"}},
        {"ATH0", BusProtocol::unknown, {"ATD", "ATE0", "ATH0"}},
    };
    for (const auto& [extra, protocol, back] : rows) {
        const Design design{.extraCommands = extra};
        const BusAddress there{.header = "14DAF110", .filter = "18DAF110"};
        EXPECT_EQ(addressCommands(there, {}, usualAddress(design, protocol), design), back) << extra;
    }
    EXPECT_EQ(addressCommands({"14DAF110", ""}, {"DA10F1", ""}, {"18DB33F1", ""}, {}),
              (std::deque<std::string>{"ATCP 18", "ATSH DA10F1"}));
    EXPECT_TRUE(addressCommands({"18DA10F1", ""}, {"DA10F1", ""}, {"18DB33F1", ""}, {}).empty());
}

} // namespace
} // namespace zint
