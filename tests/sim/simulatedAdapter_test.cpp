#include "sim/simulatedAdapter.h"
#include "sim/simulationArguments.h"

#include <gtest/gtest.h>

#include <bitset>

namespace zint {
namespace {

using namespace std::chrono_literals;
using std::string;
using Place = ReplyFault::Place;
using Time = SimulatedAdapter::Time;

/// An adapter with a program that waits for each reply.
struct Bench {
    explicit Bench(const AdapterOptions& options, const VehicleOptions& behind = {})
        : vehicle(behind), adapter(vehicle, options)
    {
    }

    Vehicle vehicle;
    SimulatedAdapter adapter;
    Time now{0};
    Time elapsed{0}; ///< by the last command

    /// @return what comes until the adapter waits for a command
    string ask(const string& bytes, const char* end = "\r")
    {
        const Time start = now;
        adapter.receive(bytes + end, now);
        string text;
        while (const auto due = adapter.nextDue()) {
            now = std::max(now, *due);
            text += adapter.take(now);
        }
        elapsed = now - start;
        return text;
    }
};

TEST(SimulatedAdapterTest, SpeaksAsAnAdapterBeforeAVehicle)
{
    const std::vector<string> codes = {"P0133", "P0301", "U0123", "P2000"};
    const std::pair<VehicleOptions, string> transcripts[] = {
        // the echo shows the commands
        {{.storedCodes = codes},
         "ATZ\r\r\rELM327 v1.5\r\r>0101\r41 01 84 07 65 04 \r\r>at dp\rAUTO, ISO 9141-2\r\r>"
         "03\r43 01 33 03 01 C1 23 \r43 20 00 00 00 00 00 \r\r>031\r43 01 33 03 01 C1 23 \r\r>"
         "04\r44 \r\r>0101\r41 01 00 77 65 65 \r\r>0102\rNO DATA\r\r>ATST 1\r?\r\r>HELLO\r?\r\r>"
         "ATH1\rOK\r\r>010D\r48 6B 10 41 0D 00 11 \r\r>ATS0\rOK\r\r>010D\r486B10410D0011\r\r>"
         "ATD\rOK\r\r>010D\r41 0D 00 \r\r>ATSH 6C 28 F1\rOK\r\r>0100\rNO DATA\r\r>"
         "ATSP6\rOK\r\r>0100\rUNABLE TO CONNECT\r\r>"},
        {{.ignitionOn = false}, "0101\rBUS INIT: ...ERROR\r\r>"},
        {{.protocol = VehicleProtocol::can, .storedCodes = codes},
         "03\r00A\r0: 43 04 01 33 03 01 \r1: C1 23 20 00 00 00 00 \r\r>ATH1\rOK\r\r>"
         "0100\r7E8 06 41 00 BE 3F B8 13 "
         "\r\r>ATS0\rOK\r\r>03\r7E8100A430401330301\r7E821C1232000000000\r\r>"},
    };
    for (const auto& [behind, transcript] : transcripts) {
        Bench bench({}, behind);
        string seen;
        for (std::size_t at = 0; at < transcript.size(); at = transcript.find('>', at) + 1)
            seen += bench.ask(transcript.substr(at, transcript.find('\r', at) - at));
        EXPECT_EQ(seen, transcript);
    }
}

// The end-to-end tests show the others through the program's eyes.
TEST(SimulatedAdapterTest, ShowsHabitsAndFaultsOfRealOnes)
{
    const std::pair<AdapterOptions, string> rows[] = {
        {{.lineFeeds = true, .singleLineEnd = true}, "41 0D 00 \r\n>"},
        {{.leadingLineEnd = true}, "\r41 0D 00 \r\r>"},
        {{.afterPrompt = "\r\n"}, "41 0D 00 \r\r>\r\n"},
        {{.garbleEvery = 1}, "41 0D G0 \r\r>"},
        {{.faults = {{1, {.text = "CAN ERROR"}}}}, "CAN ERROR\r\r>"},
        {{.faults = {{1, {Place::behindData, "<DATA ERROR"}}}}, "41 0D 00 <DATA ERROR\r\r>"},
        {{.promptsUntilSilence = 1}, "41 0D 00 \r"},
        {{.repliesUntilDisconnect = 1}, ""},
    };
    for (const auto& [options, data] : rows) {
        Bench bench(options);
        bench.ask("ATE0");
        EXPECT_EQ(bench.ask("010D"), data);
        bench.adapter.portOpened(); // a silent or vanished one is back
        EXPECT_FALSE(bench.ask("ATI").empty());
    }
}

TEST(SimulatedAdapterTest, TakesItsTime)
{
    Bench bench({.latency = 30ms, .resetDuration = 800ms, .announcesConnection = true});
    bench.adapter.receive("ATZ\r", bench.now);
    bench.adapter.receive("ATI\r", 799ms); // lost
    EXPECT_EQ(bench.ask("", ""), "ATZ\r\r\rELM327 v1.5\r\r>");
    EXPECT_EQ(bench.elapsed, 800ms);
    bench.ask("ATE0");
    EXPECT_EQ(bench.ask("0101"), "BUS INIT: ...OK\r41 01 83 07 65 04 \r\r>");
    EXPECT_EQ(bench.elapsed, 5 * 30ms) << "the dots come one by one";
    bench.ask("0102");
    EXPECT_EQ(bench.elapsed, 200ms) << "no data takes the time-out";
    bench.adapter.receive("0101\r", bench.now);
    bench.now += 29ms;
    EXPECT_EQ(bench.ask("A", ""), "STOPPED\r\r>") << "a byte stops a request";
    bench.adapter.receive("0101\r", bench.now);
    bench.adapter.portOpened();
    EXPECT_EQ(bench.ask("", ""), "41 01 83 07 65 04 \r\r>")
        << "an adapter does not know who has its port open";
    bench.ask("ATSP3");
    bench.ask("ATZ");
    EXPECT_EQ(bench.ask("ATDPN"), "ATDPN\r3\r\r>") << "a chosen protocol outlives a reset";

    const std::pair<AdapterOptions, double> rows[] = {
        {{.bitsPerSecond = 9600}, 20 * 1e7 / 9600},   // 20 characters of 10 bits
        {{.pieceLength = 4, .pieceGap = 20ms}, 60e3}, // 15 of which come
        {{.promptDelay = 150ms}, 150e3},
    };
    for (const auto& [options, microseconds] : rows) {
        Bench paced(options);
        paced.ask("ATE0");
        paced.ask("010C");
        EXPECT_NEAR(static_cast<double>(paced.elapsed.count()), microseconds, 20);
    }
}

TEST(VehicleTest, SupportsExactlyWhatItSays)
{
    for (const VehicleProtocol protocol : {VehicleProtocol::iso9141, VehicleProtocol::can}) {
        Vehicle vehicle({.protocol = protocol});
        for (const Message& kind : std::vector<Message>{{0x01, 0}, {0x02, 0, 0}, {0x09, 0}}) {
            std::bitset<0x121> promised(1);
            for (std::size_t item = 0; item <= 0xFF; ++item) {
                Message request = kind;
                request[1] = static_cast<std::uint8_t>(item);
                const Messages answer = vehicle.answer(request, 0s);
                EXPECT_EQ(!answer.empty(), promised[item]) << "mode " << int{kind[0]} << ", item " << item;
                for (std::size_t i = 0; i < 32 && promised[item] && item % 32 == 0; ++i)
                    promised[item + 1 + i] = answer.at(0).at(answer[0].size() - 4 + i / 8) >> (7 - i % 8) & 1;
            }
        }
    }
}

TEST(VehicleTest, DrivesFromTheFirstRequestOn)
{
    Vehicle vehicle;
    EXPECT_EQ(vehicle.answer(Message{0x01, 0x0D}, 500s), (Messages{{0x41, 0x0D, 0}}));
    EXPECT_EQ(vehicle.answer(Message{0x01, 0x0D}, 584s), (Messages{{0x41, 0x0D, 100}}));
}

TEST(SimulationArgumentsTest, AreTakenWhenTheyFit)
{
    SimulationOptions options;
    applySimulationArgument(options, "rubbish", R"(\0\xFCa\\\r)");
    EXPECT_EQ(options.adapter.rubbish, std::string("\0\xFC", 2) + "a\\\r");
    for (const char* argument : {"protocol=kwp", "codes=P0133,", "codes=", "latency=-1", "latency=5ms",
                                 "error=0:X", "garble-every=0", "rubbish=\\x1", "no-such-option="}) {
        const auto words = std::string_view(argument);
        const auto mark = words.find('=');
        EXPECT_THROW(applySimulationArgument(options, words.substr(0, mark), words.substr(mark + 1)),
                     ArgumentError)
            << argument;
    }
}

} // namespace
} // namespace zint
