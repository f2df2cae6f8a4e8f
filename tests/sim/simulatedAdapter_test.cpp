#include "sim/simulatedAdapter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zint {
namespace {

using namespace std::chrono_literals;
using Time = SimulatedAdapter::Time;
using std::string;

constexpr auto can = VehicleProtocol::can;

/// An adapter with a program that waits for each reply.
class Bench {
public:
    explicit Bench(AdapterOptions options = {}, const VehicleOptions& behind = {})
        : vehicle(behind), adapter(vehicle, std::move(options))
    {
    }

    /// What comes for a command, up to the last character that the adapter sends by itself.
    string ask(const string& command)
    {
        const Time start = now;
        adapter.receive(command + "\r", now);
        string reply = collect();
        elapsed = now - start;
        return reply;
    }

    string collect()
    {
        string text;
        pieces.clear();
        while (const auto due = adapter.nextDue()) {
            now = std::max(now, *due);
            pieces.push_back(adapter.take(now));
            text += pieces.back();
        }
        return text;
    }

    /// As a program does: reset, echo off.
    Bench& begin()
    {
        ask("ATZ");
        ask("ATE0");
        return *this;
    }

    Vehicle vehicle;
    SimulatedAdapter adapter;
    Time now{0};
    Time elapsed{0}; // of the last command
    std::vector<string> pieces;
};

TEST(SimulatedAdapterTest, OpensAsRealOnesDo)
{
    Bench bench;
    EXPECT_EQ(bench.ask("ATZ"), "ATZ\r\r\rELM327 v1.5\r\r>");
    EXPECT_EQ(bench.ask("ATE0"), "ATE0\rOK\r\r>");
    EXPECT_EQ(bench.ask("0101"), "41 01 83 07 65 04 \r\r>");
    EXPECT_EQ(bench.ask("03"), "43 01 33 03 01 C1 23 \r\r>");
    EXPECT_EQ(bench.ask("04"), "44 \r\r>");
    EXPECT_EQ(bench.ask("0101"), "41 01 00 77 65 65 \r\r>");
    EXPECT_EQ(bench.ask("ATZ"), "\r\rELM327 v1.5\r\r>");
    EXPECT_EQ(bench.ask("ATE0"), "ATE0\rOK\r\r>") << "a reset brings the echo back";
}

struct Row {
    string command;
    string reply;
};

TEST(SimulatedAdapterTest, AnswersCommands)
{
    const std::vector<Row> rows{
        {"ATI", "ELM327 v1.5\r\r>"},
        {"AT@1", "OBDII to RS232 Interpreter\r\r>"},
        {"ATRV", "13.1V\r\r>"},
        {"ATDP", "AUTO\r\r>"},
        {"ATDPN", "A0\r\r>"},
        {"0100", "41 00 BE 3F B8 13 \r\r>"},
        {"ATDP", "AUTO, ISO 9141-2\r\r>"},
        {"ATDPN", "A3\r\r>"},
        {" at\tdp N\n", "A3\r\r>"},
        {"ATSP3", "OK\r\r>"},
        {"ATDPN", "3\r\r>"},
        {"ATSPA6", "OK\r\r>"},
        {"ATST 0A", "OK\r\r>"},
        {"ATAT2", "OK\r\r>"},
        {"ATM0", "OK\r\r>"},
        {"ATCAF0", "OK\r\r>"},
        {"ATSH 68 6A F1", "OK\r\r>"},
        {"ATSH 7DG", "?\r\r>"},
        {"ATSH 7DF0", "?\r\r>"},
        {"ATST 1", "?\r\r>"},
        {"ATSPD", "?\r\r>"},
        {"ATAT3", "?\r\r>"},
        {"ATL2", "?\r\r>"},
        {"ATQQ", "?\r\r>"},
        {"AT", "?\r\r>"},
        {"HELLO", "?\r\r>"},
        {"1", "?\r\r>"},
        {"0102030405060708", "?\r\r>"},
        {string(1000, 'A'), "?\r\r>"},
        {"0102", "NO DATA\r\r>"},
        {"05", "NO DATA\r\r>"},
    };
    Bench bench;
    bench.begin();
    for (const auto& [command, reply] : rows)
        EXPECT_EQ(bench.ask(command), reply) << command;
}

TEST(SimulatedAdapterTest, SettingsShapeRepliesUntilDefaultsAreRestored)
{
    Bench bench;
    bench.begin().ask("ATH1");
    EXPECT_EQ(bench.ask("0101"), "48 6B 10 41 01 83 07 65 04 F8 \r\r>");
    bench.ask("ATS0");
    EXPECT_EQ(bench.ask("0101"), "486B10410183076504F8\r\r>");
    EXPECT_EQ(bench.ask("ATL1"), "OK\r\n\r\n>");
    EXPECT_EQ(bench.ask("ATH0"), "OK\r\n\r\n>");
    EXPECT_EQ(bench.ask("0101"), "410183076504\r\n\r\n>");
    EXPECT_EQ(bench.ask("ATD"), "OK\r\r>");
    EXPECT_EQ(bench.ask("0101"), "0101\r41 01 83 07 65 04 \r\r>");
}

TEST(SimulatedAdapterTest, WritesCanFrames)
{
    Bench bench({}, {.protocol = can, .storedCodes = {"P0133", "P0301", "U0004", "P2000"}});
    bench.begin();
    EXPECT_EQ(bench.ask("03"), "00A\r0: 43 04 01 33 03 01 \r1: C0 04 20 00 00 00 00 \r\r>");
    EXPECT_EQ(bench.ask("0902"),
              "014\r0: 49 02 01 55 39 5A \r1: 4E 54 42 44 32 39 31 \r2: 5A 30 30 30 30 34 32 \r\r>");
    bench.ask("ATH1");
    EXPECT_EQ(bench.ask("0100"), "7E8 06 41 00 BE 3F B8 13 \r\r>");
    EXPECT_EQ(bench.ask("03"), "7E8 10 0A 43 04 01 33 03 01 \r7E8 21 C0 04 20 00 00 00 00 \r\r>");
    bench.ask("ATS0");
    EXPECT_EQ(bench.ask("03"), "7E8100A430401330301\r7E821C0042000000000\r\r>");
    EXPECT_EQ(bench.ask("07"), "7E80447010420\r\r>");
}

TEST(SimulatedAdapterTest, ReachesTheVehicleUnderItsHeaderAndProtocolOnly)
{
    Bench bench;
    bench.begin().ask("ATSH 6C 28 F1");
    EXPECT_EQ(bench.ask("0100"), "NO DATA\r\r>");
    bench.ask("ATSH 6C 10 F1");
    EXPECT_EQ(bench.ask("0100"), "41 00 BE 3F B8 13 \r\r>");
    bench.ask("ATTP6");
    EXPECT_EQ(bench.ask("0100"), "UNABLE TO CONNECT\r\r>");
    bench.begin(); // a protocol that was merely tried is forgotten
    EXPECT_EQ(bench.ask("0100"), "41 00 BE 3F B8 13 \r\r>");
    bench.ask("ATSP6");
    bench.begin().begin(); // one that was set is not
    EXPECT_EQ(bench.ask("0100"), "UNABLE TO CONNECT\r\r>");
}

TEST(SimulatedAdapterTest, TheIgnitionMustBeOn)
{
    EXPECT_EQ(Bench({}, {.ignitionOn = false}).begin().ask("0101"), "BUS INIT: ...ERROR\r\r>");
    EXPECT_EQ(Bench({}, {.protocol = can, .ignitionOn = false}).begin().ask("0101"),
              "UNABLE TO CONNECT\r\r>");
}

TEST(SimulatedAdapterTest, ALoneReturnRepeats)
{
    Bench bench;
    EXPECT_EQ(bench.ask(""), "\r?\r\r>");
    bench.begin().ask("010D");
    EXPECT_EQ(bench.ask(""), "41 0D 00 \r\r>");
    bench.ask("ATRV");
    EXPECT_EQ(bench.ask(" "), "13.1V\r\r>");
}

TEST(SimulatedAdapterTest, ADigitBehindTheRequestLimitsTheLines)
{
    Bench bench({}, {.storedCodes = {"P0001", "P0002", "P0003", "P0004"}});
    bench.begin();
    EXPECT_EQ(bench.ask("010D1"), "41 0D 00 \r\r>");
    EXPECT_EQ(bench.ask("03"), "43 00 01 00 02 00 03 \r43 00 04 00 00 00 00 \r\r>");
    EXPECT_EQ(bench.ask("031"), "43 00 01 00 02 00 03 \r\r>");
}

struct Habit {
    AdapterOptions options;
    string reset;
    string data; // for the first request
};

TEST(SimulatedAdapterTest, ShowsTheHabitsOfRealOnes)
{
    const string banner = "ATZ\r\r\rELM327 v1.5\r\r>";
    const std::vector<Habit> habits{
        {{.lineFeeds = true}, "ATZ\r\r\nELM327 v1.5\r\n\r\n>", "41 0D 00 \r\n\r\n>"},
        {{.lineFeeds = true, .singleLineEnd = true}, "ATZ\r\r\nELM327 v1.5\r\n>", "41 0D 00 \r\n>"},
        {{.leadingLineEnd = true}, "ATZ\r\r\r\rELM327 v1.5\r\r>", "\r41 0D 00 \r\r>"},
        {{.trailingBlank = false}, banner, "41 0D 00\r\r>"},
        {{.afterPrompt = "\r\n"}, banner + "\r\n", "41 0D 00 \r\r>\r\n"},
        {{.rubbish = string("\xFC\0\0", 3)}, string("\xFC\0\0", 3) + banner, "41 0D 00 \r\r>"},
        {{.announcesConnection = true}, banner, "BUS INIT: ...OK\r41 0D 00 \r\r>"},
        {{.garbleEvery = 1}, banner, "41 0D G0 \r\r>"},
        {{.errors = {{1, "CAN ERROR"}}}, banner, "CAN ERROR\r\r>"},
        {{.errors = {{1, "<DATA ERROR"}}}, banner, "41 0D 00 <DATA ERROR\r\r>"},
        {{.promptsUntilSilence = 2}, banner, "41 0D 00 \r"},
    };
    for (const auto& [options, reset, data] : habits) {
        Bench bench(options);
        EXPECT_EQ(bench.ask("ATZ"), reset);
        bench.ask("ATE0");
        EXPECT_EQ(bench.ask("010D"), data);
    }
}

TEST(SimulatedAdapterTest, FaultsStrikeTheReplyThatTheyAreMeantFor)
{
    Bench bench({.garbleEvery = 3, .errors = {{2, "BUFFER FULL"}}});
    bench.begin();
    EXPECT_EQ(bench.ask("0101"), "41 01 83 07 65 04 \r\r>");
    EXPECT_EQ(bench.ask("0101"), "BUFFER FULL\r\r>");
    EXPECT_EQ(bench.ask("0101"), "41 01 83 07 65 04 \r\r>");
    EXPECT_EQ(bench.ask("0101"), "41 01 G3 07 65 04 \r\r>");
    EXPECT_EQ(bench.ask("0101"), "41 01 83 07 65 04 \r\r>");
}

TEST(SimulatedAdapterTest, AnnouncesTheConnectionAfterEachReset)
{
    Bench bench({.announcesConnection = true}, {.protocol = can});
    for (int exchange = 0; exchange < 2; ++exchange) {
        bench.begin();
        EXPECT_EQ(bench.ask("010D"), "SEARCHING...\r41 0D 00 \r\r>");
        EXPECT_EQ(bench.ask("010D"), "41 0D 00 \r\r>");
    }
}

TEST(SimulatedAdapterTest, CanLeaveTheResetUnanswered)
{
    Bench bench({.answersReset = false});
    EXPECT_EQ(bench.ask("ATZ"), "ATZ\r");
    EXPECT_EQ(bench.ask("ATE0"), "ATE0\rOK\r\r>");
}

TEST(SimulatedAdapterTest, ASilentAdapterStaysSilentUntilThePortIsOpenedAgain)
{
    Bench bench({.promptsUntilSilence = 1});
    bench.ask("ATZ");
    EXPECT_EQ(bench.ask("ATE0"), "ATE0\rOK\r");
    EXPECT_EQ(bench.ask("ATZ"), "");
    bench.adapter.portOpened(bench.now);
    EXPECT_EQ(bench.ask("ATI"), "ELM327 v1.5\r\r>");
}

TEST(SimulatedAdapterTest, VanishesOnceTheLastReplyIsTaken)
{
    Bench bench({.repliesUntilDisconnect = 2});
    bench.ask("ATZ");
    bench.adapter.receive("ATE0\r", bench.now);
    bench.adapter.receive("010D\r", bench.now);
    EXPECT_FALSE(bench.adapter.disconnected());
    EXPECT_EQ(bench.collect(), "ATE0\rOK\r\r>");
    EXPECT_TRUE(bench.adapter.disconnected());
    EXPECT_EQ(bench.ask("010D"), "");
    bench.adapter.portOpened(bench.now);
    EXPECT_FALSE(bench.adapter.disconnected());
}

TEST(SimulatedAdapterTest, LatencyDelaysDataAndTheTimeoutDelaysNoData)
{
    Bench bench({.latency = 30ms});
    bench.begin().ask("0100");
    EXPECT_EQ(bench.elapsed, 30ms);
    bench.ask("0102");
    EXPECT_EQ(bench.elapsed, 200ms);
    bench.ask("ATST19");
    EXPECT_EQ(bench.elapsed, 0ms);
    bench.ask("0102");
    EXPECT_EQ(bench.elapsed, 100ms);
    bench.ask("ATAT0");
    bench.ask("0100");
    EXPECT_EQ(bench.elapsed, 130ms) << "without adaptive timing the adapter waits for more";
    bench.ask("01001");
    EXPECT_EQ(bench.elapsed, 30ms) << "unless it knows that there is no more";
}

TEST(SimulatedAdapterTest, TheDotsComeOneByOne)
{
    Bench bench({.latency = 10ms, .announcesConnection = true});
    bench.begin().ask("0101");
    EXPECT_EQ(bench.pieces,
              (std::vector<string>{"BUS INIT: ", ".", ".", ".", "OK\r", "41 01 83 07 65 04 \r\r>"}));
    EXPECT_EQ(bench.elapsed, 50ms);
}

TEST(SimulatedAdapterTest, AByteStopsARequest)
{
    Bench bench({.latency = 100ms, .repliesUntilDisconnect = 4}); // the stopped reply counts for nothing
    bench.begin();
    bench.adapter.receive("0101\r", bench.now);
    bench.now += 99ms;
    EXPECT_EQ(bench.adapter.take(bench.now), "");
    bench.adapter.receive("A", bench.now);
    EXPECT_EQ(bench.collect(), "STOPPED\r\r>");
    EXPECT_EQ(bench.now, 99ms);
    EXPECT_EQ(bench.ask("0101"), "41 01 83 07 65 04 \r\r>") << "the byte that stopped the request is lost";
}

TEST(SimulatedAdapterTest, AStopCutsTheLineThatIsOnItsWay)
{
    Bench bench({.latency = 10ms, .bitsPerSecond = 10000}); // 1 ms a character
    bench.begin();
    bench.adapter.receive("0101\r", bench.now);
    bench.now += 5ms + 10ms + 6ms; // request, latency, six characters of the reply
    bench.adapter.receive("\r", bench.now - 1ms);
    EXPECT_EQ(bench.collect(), "41 01 STOPPED\r\r>");
}

TEST(SimulatedAdapterTest, BytesDuringAResetAreLost)
{
    Bench bench({.resetDuration = 800ms});
    bench.adapter.receive("ATZ\r", 0ms);
    bench.adapter.receive("ATI\r", 799ms);
    EXPECT_EQ(bench.adapter.take(799ms), "ATZ\r");
    EXPECT_EQ(bench.collect(), "\r\rELM327 v1.5\r\r>");
    EXPECT_EQ(bench.now, 800ms);

    bench.adapter.receive("ATZ\r", 900ms);
    bench.adapter.portOpened(1000ms);
    bench.now = 1000ms;
    EXPECT_EQ(bench.ask("ATI"), "ATI\rELM327 v1.5\r\r>") << "for a new session the reset is over";
}

TEST(SimulatedAdapterTest, AnUnfinishedCommandIsDropped)
{
    Bench bench;
    bench.begin();
    bench.adapter.receive("01", bench.now);
    bench.now += 19s;
    bench.adapter.receive("0", bench.now);
    EXPECT_EQ(bench.adapter.nextDue(), bench.now + 20s);
    bench.now += 19s;
    EXPECT_EQ(bench.adapter.take(bench.now), "");
    bench.now += 2s;
    bench.adapter.receive("010D\r", bench.now);
    EXPECT_EQ(bench.collect(), "?\r\r>41 0D 00 \r\r>");
}

TEST(SimulatedAdapterTest, TheLineCarriesSoManyExchangesASecond)
{
    for (const auto& [bitsPerSecond, mostExchanges] : {std::pair{9600, 48}, std::pair{38400, 192}}) {
        Bench bench({.bitsPerSecond = bitsPerSecond});
        bench.begin();
        const Time start = bench.now;
        int exchanges = 0;
        for (; bench.now < start + 1s; ++exchanges)
            ASSERT_EQ(bench.ask("010C").size(), 15U);
        EXPECT_NEAR(exchanges, mostExchanges, 1) << bitsPerSecond;
    }
}

TEST(SimulatedAdapterTest, RepliesComeInPieces)
{
    for (const Time gap : {Time{0}, Time{5ms}}) {
        Bench bench({.pieceLength = 4, .pieceGap = gap});
        bench.begin();
        EXPECT_EQ(bench.ask("0101"), "41 01 83 07 65 04 \r\r>");
        EXPECT_EQ(bench.pieces, (std::vector<string>{"41 0", "1 83", " 07 ", "65 0", "4 \r\r", ">"}));
        EXPECT_EQ(bench.elapsed, 5 * gap);
    }
}

TEST(SimulatedAdapterTest, NothingOfTheLastSessionReachesTheNext)
{
    Bench bench({.latency = 10ms});
    bench.begin();
    bench.adapter.receive("0101\r", bench.now);
    bench.adapter.portOpened(bench.now + 1ms);
    EXPECT_FALSE(bench.adapter.nextDue());
    bench.now += 1ms;
    EXPECT_EQ(bench.ask("ATI"), "ELM327 v1.5\r\r>") << "the echo is still off";
}

TEST(SimulatedAdapterTest, TakesAnyBytes)
{
    Bench bench({.latency = 1ms});
    string bytes;
    for (int i = 0; i < 3 * 256; ++i)
        bytes += static_cast<char>(i * 7);
    bench.adapter.receive(bytes, bench.now);
    bench.collect();
    EXPECT_TRUE(bench.ask("ATZ").ends_with("ELM327 v1.5\r\r>"));
}

} // namespace
} // namespace zint
