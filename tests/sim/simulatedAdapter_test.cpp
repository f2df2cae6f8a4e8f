#include "support/simulated.h"

#include <gtest/gtest.h>

#include <bitset>
#include <sstream>
#include <tuple>

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
        const string text = replyOf(adapter, bytes + end, now);
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

/// The last lines of a conversation: what comes for the last of several commands.
string converse(const string& words, const string& commands)
{
    const SimulationOptions options = simulated(words);
    Bench bench(options.adapter, options.vehicle);
    bench.ask("ATE0");
    string reply;
    std::istringstream stream(commands);
    for (string command; stream >> command;)
        reply = bench.ask(command);
    return reply.substr(0, reply.rfind("\r\r>"));
}

// ReadBackTest shows that messages of several lines are numbered.
TEST(SimulatedAdapterTest, WritesEachProtocol)
{
    const std::tuple<const char*, const char*, const char*> rows[] = {
        // protocol, its number, 0100 of two units
        {"pwm", "A1", "41 6B 10 41 00 BE 3F B8 13 25 \r41 6B 18 41 00 80 18 00 01 72 "},
        {"vpw", "A2", "48 6B 10 41 00 BE 3F B8 13 4F \r48 6B 18 41 00 80 18 00 01 18 "},
        {"iso9141", "A3", "48 6B 10 41 00 BE 3F B8 13 CC \r48 6B 18 41 00 80 18 00 01 A5 "},
        {"kwp-slow", "A4", "86 F1 10 41 00 BE 3F B8 13 90 \r86 F1 18 41 00 80 18 00 01 69 "},
        {"kwp-fast length-byte", "A5",
         "80 F1 10 06 41 00 BE 3F B8 13 90 \r80 F1 18 06 41 00 80 18 00 01 69 "},
        {"can padding=AA", "A6", "7E8 06 41 00 BE 3F B8 13 AA \r7E9 06 41 00 80 18 00 01 AA "},
        {"can29", "A7", "18 DA F1 10 06 41 00 BE 3F B8 13 \r18 DA F1 18 06 41 00 80 18 00 01 "},
        {"can250 length-digit", "A8", "7E8 7 06 41 00 BE 3F B8 13 \r7E9 7 06 41 00 80 18 00 01 "},
        {"can29-250", "A9", "18 DA F1 10 06 41 00 BE 3F B8 13 \r18 DA F1 18 06 41 00 80 18 00 01 "},
    };
    for (const auto& [protocol, number, supported] : rows) {
        const string words = string("units=2 protocol=") + protocol;
        EXPECT_EQ(converse(words, "ATH1 0100"), supported);
        EXPECT_EQ(converse(words, "0100 ATDPN"), number);
        EXPECT_EQ(converse(words, string("ATSP") + number[1] + " 0100 ATDPN"), number + 1);
    }
    const Message bytes{0x41, 0x6B, 0x10, 0x41, 0x0C, 0x1A, 0xF8};
    EXPECT_EQ(checkByte(CheckByte::crc, bytes), 0x3D) << "1726 rpm on PWM";
}

TEST(SimulatedAdapterTest, ShowsWhatVehiclesAndBussesDo)
{
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"protocol=can units=2",
         "ATH1 0101 0101 0101", // the transmission is first now
         "7E9 06 41 01 81 04 00 00 \r7E8 06 41 01 83 07 E5 84 "},
        {"protocol=can units=2", "ATSH7E1 03", "43 01 07 41 "},
        {"protocol=can29 units=2", "ATSHDA10F1 07", "47 01 04 20 "},
        {"protocol=can permanent=P0420,U0100", "04 0A", "4A 02 04 20 C1 00 "},
        {"protocol=can units=2 refuse-clear", "ATH1 04", "7E8 03 7F 04 22 \r7E9 03 7F 04 22 "},
        {"refuse-clear", "04 0101", "41 01 83 07 65 04 "},
        {"protocol=kwp-slow", "0A", "7F 0A 11 "},
        {"protocol=kwp-fast", "0902 0902 0B", "7F 0B 11 "},
        {"protocol=kwp-fast", "0102", "7F 01 12 "},
        {"", "0A", "NO DATA"},
        {"protocol=can", "050101", "NO DATA"},
        {"", "050101", "45 01 01 5A "},
        {"", "050702", "45 07 02 14 00 3C "},
        {"", "0602", "46 02 81 06 90 03 00 \r46 02 01 06 90 09 00 "},
        {"protocol=can", "0621", "00A\r0: 46 21 80 05 6A 40 \r1: 00 00 60 00 00 00 00 "},
        {"protocol=can", "04 0621", "00A\r0: 46 21 80 05 00 00 \r1: 00 00 00 00 00 00 00 "},
        {"protocol=can", "020200", "42 02 00 01 33 "},
        {"protocol=can diesel", "0101", "41 01 83 0F EB 42 "},
        {"protocol=can pending-response=5000", "03",
         "7F 03 78 \r008\r0: 43 03 01 33 03 01 \r1: C1 23 00 00 00 00 00 "},
        {"protocol=can units=2 drop-out=2", "ATH1 07", "7E8 04 47 01 04 20 \r7E9 02 47 00 "},
        {"protocol=can units=2 drop-out=2", "ATH1 07 07", "7E8 04 47 01 04 20 "},
        {"protocol=can units=2", "03 03 071", "47 00 "},
        {"protocol=can units=2 interleave", "ATH1 ATS0 0906",
         "7E8100B4906025A4E01\r7E907490601172A009B\r7E8211700C0FFEE0000"},
        {"protocol=can units=2 lose-line=2", "ATH1 0902 0902",
         "7E8 10 14 49 02 01 55 39 5A \r7E8 22 5A 30 30 30 30 34 32 "},
        {"protocol=can swap-lines=1", "ATS0 0621", "00A\r1:00006000000000\r0:462180056A40"},
        {"protocol=can foreign-answer=1", "07", "41 0D 00 \r47 01 04 20 "},
        {"protocol=can padding=55 show-padding", "07", "47 01 04 20 55 55 55 "},
        {"double-line=1", "0101", "41 01 83 07 65 04 \r41 01 83 07 65 04 "},
        {"wrong-check=1", "ATH1 010D", "48 6B 10 41 0D 00 10 "},
        {"protocol=can wrong-check=1", "010D", "41 0D 01 <RX ERROR"},
        {"refuse=H1,s0", "ATS0 ATH1 ATS1", "OK"},
        {"refuse=H1,s0", "ATS0", "?"},
        {"protocol=can", "ATCAF0 02010D", "03 41 0D 00 "},
        {"protocol=can", "ATCAF0 010D", "NO DATA"},
        {"protocol=can", "ATD1 ATH1 010D", "7E8 4 03 41 0D 00 "},
    };
    for (const auto& [words, commands, reply] : rows)
        EXPECT_EQ(converse(words, commands), reply) << words << ", " << commands;

    Bench slow({.latency = 50ms}, {.protocol = VehicleProtocol::can, .pendingResponse = 150ms});
    slow.ask("ATE0");
    EXPECT_EQ(slow.ask("07"), "7F 07 78 \r47 01 04 20 \r\r>");
    EXPECT_EQ(slow.elapsed, 200ms);
    slow.ask("ATST10"); // 64 ms
    EXPECT_EQ(slow.ask("07"), "7F 07 78 \r\r>") << "the adapter does not wait for what was announced";
    EXPECT_EQ(slow.ask("0101"), "41 01 83 07 65 04 \r\r>") << "live values are at hand";
}

// All at the moment at which ParametersTest knows every figure: 99.7 km/h, 2655 rpm.
TEST(SimulatedAdapterTest, TakesHeadersFiltersAndCombinedRequests)
{
    const std::tuple<const char*, const char*, const char*> rows[] = {
        // mode 22: the unit that has it answers; one that is asked alone refuses what it does not have
        {"", "ATH1 221154", "7E8 04 62 11 54 85 "},
        {"", "ATH1 222A10", // signed hundredths
         "7E8 10 0F 62 2A 10 FF 83 00 \r7E8 21 28 00 88 FF DD FE F6 \r7E8 22 00 05 00 00 00 00 00 "},
        {"", "ATSH7E1 221940", "62 19 40 77 "},
        {"", "ATSH7E1 221131", "7F 22 31 "},
        {"", "ATSH7E1 2219401941", "7F 22 13 "},
        {"", "229999", "NO DATA"},
        // an address that adapters don't show unless they are told to
        {"", "ATSH744 224003", "NO DATA"},
        {"", "ATH1 ATSH744 ATCRA74C 224003", "74C 05 62 40 03 00 B4 "},
        {"", "ATSH744 ATCRA74C 0100", "7F 01 11 "},
        {"", "ATCF740 ATCM7F0 ATSH744 224003", "62 40 03 00 B4 "},
        {"", "ATCRA74C 010D", "NO DATA"},
        {"", "ATCRA74C ATCRA 010D", "41 0D 64 \r41 0D 64 "},
        {"", "ATCRA74C ATAR ATSH7E0 010D", "41 0D 64 "},
        {"", "ATSH744 ATCRA74C ATD ATE0 ATH1 010C", "7E8 04 41 0C 29 7B \r7E9 04 41 0C 29 7B "},
        {"refuse=CRA", "ATCRA74C ATCRA", "?"},
        {"protocol=can29", "ATH1 ATSH18DA40F1 224003", "18 DA F1 40 05 62 40 03 00 B4 "},
        {"", "ATSH7E0F", "?"},
        {"mind-headers", "ATSP6 ATSHDA10F1", "?"},
        {"mind-headers", "ATSP7 ATSH7E0", "?"},
        // several parameters in one request
        {"", "ATH1 010C0D13",
         "7E8 10 08 41 0C 29 7B 0D 64 \r7E8 21 13 FF 00 00 00 00 00 \r7E9 06 41 0C 29 7B 0D 64 "},
        {"interleave", "010D410C", // whose lines are whose?
         "00B\r00B\r0: 41 0D 64 41 00 07 \r0: 41 0D 64 41 00 04 \r1: EF 84 0C 29 7B 00 00 \r"
         "1: 00 00 0C 29 7B 00 00 "},
        {"combined=refused", "ATH1 010C0D", "7E8 03 7F 01 12 \r7E9 06 41 0C 29 7B 0D 64 "},
        {"combined=sorted transmission-combined=first", "ATH1 010D0C",
         "7E8 06 41 0C 29 7B 0D 64 \r7E9 03 41 0D 64 "},
        {"combined=silent transmission-combined=silent", "010C0D", "NO DATA"},
        {"longest-request=2", "010C0D", "?"},
        {"longest-request=2", "010D", "41 0D 64 \r41 0D 64 "},
    };
    for (const auto& [words, commands, reply] : rows) {
        const string all = string("protocol=can all-parameters units=2 moment=634500 ") + words;
        EXPECT_EQ(converse(all, commands), reply) << words << ", " << commands;
    }
}

TEST(VehicleTest, SupportsExactlyWhatItSays)
{
    constexpr std::uint32_t unitHeaders[] = {0x7E0, 0x7E1, 0x6C10F1, 0x6C18F1};
    for (const char* words :
         {"protocol=can", "protocol=can units=2", "protocol=can diesel", "protocol=can all-parameters",
          "protocol=can four-banks units=2", "", "units=2", "diesel", "protocol=kwp-fast units=2"}) {
        Vehicle vehicle(simulated(words).vehicle);
        for (const std::uint32_t unit : unitHeaders) {
            for (const Message& kind : std::vector<Message>{
                     {0x01, 0}, {0x02, 0, 0}, {0x05, 0, 1}, {0x05, 0, 2}, {0x06, 0}, {0x09, 0}}) {
                std::bitset<0x121> promised;
                for (std::size_t item = 0; item <= 0xFF; ++item) {
                    Message request = kind;
                    request[1] = static_cast<std::uint8_t>(item);
                    const auto answers = vehicle.answers(unit, request, 0s);
                    const bool isAnswered = !answers.empty() && answers[0].messages[0][0] != refusal;
                    if (item == 0) // the whole service may be missing
                        promised[0] = isAnswered;
                    EXPECT_EQ(isAnswered, promised[item])
                        << words << ", unit " << unit << ", mode " << int{kind[0]} << ", item " << item;
                    for (std::size_t i = 0; i < 32 && isAnswered && item % 32 == 0; ++i) {
                        const Message& map = answers[0].messages[0];
                        promised[item + 1 + i] = map.at(map.size() - 4 + i / 8) >> (7 - i % 8) & 1;
                    }
                }
            }
        }
        EXPECT_EQ(vehicle.answer(Message{0x01, 0x00}, 0s).empty(), false);
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
                                 "error=0:X", "garble-every=0", "units=3", "padding=A", "drop-out=0",
                                 "combined=no", "rubbish=\\x1", "no-such-option="}) {
        const auto words = std::string_view(argument);
        const auto mark = words.find('=');
        EXPECT_THROW(applySimulationArgument(options, words.substr(0, mark), words.substr(mark + 1)),
                     ArgumentError)
            << argument;
    }
}

} // namespace
} // namespace zint
