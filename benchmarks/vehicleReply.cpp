// Lines per second that are joined to messages and decoded, for replies of two control units as adapters send
// them.

#include "measure.h"
#include "vehicle/unitReading.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

namespace {

constexpr double goal = 200'000; // lines per second
constexpr int rounds = 7;
constexpr int passes = 2000; // over the exchanges, in each round

struct Exchange {
    const char* request;
    std::string_view reply;
    std::size_t units = 2; ///< that answer
};

struct Recording {
    const char* name;
    zint::BusProtocol protocol;
    std::vector<Exchange> exchanges;
};

const std::vector<Recording> recordings = {
    {"CAN, one line a message",
     zint::BusProtocol::can11At500,
     {{"0100", "7E8064100BE3FB813\r7E906410080180001\r\r>"},
      {"0101", "7E80641018307E584\r7E906410181040000\r\r>"},
      {"010C", "7E804410C0C30\r7E904410C0C30\r\r>"},
      {"0114", "7E8 04 41 14 5A 80 \r\r>", 1},
      {"07", "7E8 02 47 00 \r7E9 02 47 00 \r\r>"}}},
    {"CAN, messages of several frames",
     zint::BusProtocol::can11At500,
     {{"03", "7E90443010741\r7E81008430301330301\r7E821C1230000000000\r\r>"},
      {"0904", "7E810234904025A4E54\r7E8212D454E472D3437\r7E82231312D4100005A\r7E8234E542D49474E2D\r"
               "7E82430383135000000\r7E82500000000000000\r7E910134904015A4E54\r7E9212D4742582D3030\r"
               "7E92234320000000000\r\r>"},
      {"0908",
       "7E8102B490814021A03\r7E82144018E021A0000\r7E822000001F0021A00\r7E8230000000177021A\r"
       "7E82400000000003C00\r7E825E10102021A0000\r7E82600000000000000\r\r>",
       1},
      {"0601",
       "7E8107F4601010A0E69\r7E8210E690E6901020A\r7E8220E690E690E6901\r7E823030A099B099B09\r"
       "7E8249B01040A133613\r7E82536133601051000\r7E82648000000C80106\r7E827100054000000C8\r"
       "7E82801070A03340000\r7E829099B01080A199D\r7E82A1336FFFF010910\r7E82B03E800000FA001\r"
       "7E82C0A1007D000001F\r7E82D40018005733340\r7E82E00C000018184FF\r7E82FF4FFCE00320182\r"
       "7E82024000C0004FFFF\r7E82101830B01C7012C\r7E82202580000000000\r\r>",
       1}}},
    {"K-line",
     zint::BusProtocol::kwpFastInit,
     {{"0101", "86F11041018307E584BC\r86F11841018104000056\r\r>"},
      {"03", "87F118430741000000001B\r87F1104301330301C123E7\r\r>"},
      {"0904",
       "87F1104904015A4E542DFF\r87F110490402454E472DDE\r87F11049040334373131A5\r87F1104904042D41000047\r"
       "87F1104904055A4E542D03\r87F11049040649474E2DE6\r87F11049040730383135AA\r87F11049040800000000DD\r"
       "87F1184904015A4E542D07\r87F1184904024742582DED\r87F11849040330303432A6\r87F11849040400000000E1\r\r>"},
      {"0114", "83F1187F01121E\r84F11041145A80B4\r\r>"},
      {"0601", "87F1104601010140012032\r87F11846018400640032F1\r\r>"}}},
    {"J1850",
     zint::BusProtocol::j1850Pwm,
     {{"0101", "416B1041018307E58496\r416B184101810400008A\r\r>"},
      {"03", "416B18430741000000000E\r416B104301330301C123DB\r\r>"},
      {"0902",
       "416B1049020100000055CF\r416B10490202395A4E5470\r416B10490203424432399F\r416B10490204315A3030A9\r"
       "416B104902053030343216\r\r>",
       1},
      {"010C", "416B10410C0C30E1\r416B18410C0C3096\r\r>"},
      {"0601", "416B1046010101400120D8\r416B1846018400640032F6\r\r>"}}},
};

/// Without those that hold nothing but the prompt.
std::size_t lineCount(std::string_view reply)
{
    return static_cast<std::size_t>(std::ranges::count(reply, '\r')) - 1;
}

/// @return the lines
std::size_t readAll(const Recording& recording)
{
    std::size_t lines = 0;
    for (const auto& [request, reply, units] : recording.exchanges) {
        const zint::ExchangeReading reading = zint::readExchange(request, reply, recording.protocol);
        const auto isIncomplete = [](const auto& unit) { return unit.second.isIncomplete; };
        if (reading.units.size() != units || std::ranges::any_of(reading.units, isIncomplete))
            fail(request);
        lines += lineCount(reply);
    }
    return lines;
}

double linesPerSecond(const Recording& recording)
{
    const auto start = RateClock::now();
    std::size_t lines = 0;
    for (int pass = 0; pass < passes; ++pass)
        lines += readAll(recording);
    return static_cast<double>(lines) / secondsSince(start);
}

} // namespace

int main()
{
    for (const Recording& recording : recordings) {
        std::vector<double> rates;
        for (int round = 0; round < rounds; ++round)
            rates.push_back(linesPerSecond(recording));
        std::printf("joining and decoding, %s: %.0f lines/s (median of %d, %s)\n", recording.name,
                    median(rates), rounds, atLeast(goal, median(rates)).c_str());
    }
    return benchmarkStatus();
}
