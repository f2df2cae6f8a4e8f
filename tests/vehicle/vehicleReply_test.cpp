#include "shared/module1.h"
#include "vehicle/vehicleReply.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zint {
namespace {

struct Row {
    char protocol;
    std::string_view request;
    std::string_view reply;    ///< "|" stands for a line end
    std::string_view expected; ///< unit=bytes, "..." behind what is incomplete, "+" and the error's number
    BusProtocol bus() const { return static_cast<BusProtocol>(protocol); }
};

std::string withLineEnds(std::string_view text)
{
    std::string reply(text);
    std::replace(reply.begin(), reply.end(), '|', '\r');
    return reply;
}

std::string told(const Row& row)
{
    const VehicleReply read = readVehicleReply(row.request, withLineEnds(row.reply), row.bus());
    std::string text;
    for (const UnitMessage& message : read.messages) {
        text += (text.empty() ? "" : " ") + message.unit + "=";
        for (const std::uint8_t byte : message.bytes)
            text += hexText(byte, 2);
        text += message.isIncomplete ? "..." : "";
    }
    return read.error == ReplyError::none ? text : text + "+" + std::to_string(static_cast<int>(read.error));
}

void expectTold(std::initializer_list<Row> rows)
{
    for (const Row& row : rows)
        EXPECT_EQ(told(row), row.expected) << row.protocol << " " << row.request << ": " << row.reply;
}

TEST(VehicleReplyTest, ReadsCanFramesInEveryPrint)
{
    expectTold({
        {'6', "010C", "7E8 04 41 0C 0D 80 |7E9 04 41 0C 0D 84 AA AA AA ||>", "7E8=410C0D80 7E9=410C0D84"},
        {'6', "010C", "7e804410c0d80||>", "7E8=410C0D80"},
        {'6', "010C", "7E8 8 04 41 0C 0D 80 00 00 00||>",
         "7E8=410C0D80"}, // the number of bytes behind the id
        {'6', "010C", "7E8804410C0D80000000||>", "7E8=410C0D80"},
        {'7', "0100", "18 DA F1 1D 06 41 00 98 3A 80 01 55|>", "1D=4100983A8001"},
        {'7', "0100", "18daf1110641 00be3fa813||>", "11=4100BE3FA813"},
        {'7', "0100", "18DAF110806410098 3A800155||>", "10=4100983A8001"},
        {'6', "02010C", "04 41 0C 0D 80 00 00 00 ||>", "?1=410C0D80"}, // the sender writes the length
        {'6', "010C0D", "7E8 06 41 0D 20 0C 0D 80 ||>", "7E8=410D200C0D80"},
        {'6', "010C", "7E8 00 41 0C 0D 80|7E8 0F 41 0C|7E8 30 00 00||>", "+15"}, // no lengths; flow control
        {'6', "010C", "7E8 06 41 0C 0D 80||>", "7E8=410C0D80..."},
        {'6', "010C", "7E8 04 41 0C 0D 8||>", "7E8=410C0D..."},
        {'6', "03", "18DAF110024300||>", "10=4300"}, // another protocol than was told
        {'3', "03", "7E8024300||>", "7E8=4300"},
        {'0', "03", "7E8 02 43 00||>", "7E8=4300"},
    });
}

TEST(VehicleReplyTest, JoinsTheFramesOfEachUnit)
{
    const std::string whole = "7E8=4902013144344750303052353542313233343536";
    const std::string two = whole + " 7E9=490A01414243444546474849";
    expectTold({
        {'6', "0902",
         "7E8 10 14 49 02 01 31 44 34|7E8 21 47 50 30 30 52 35 35|7E8 22 42 31 32 33 34 35 36||>", whole},
        {'6', "0902", "7E82242313233343536|7E81014490201314434|7E82147503030523535||>", whole},
        // each line twice
        {'6', "0902",
         "7E81014490201314434|7E81014490201314434|7E82147503030523535|7E82147503030523535|"
         "7E82242313233343536|7E82242313233343536||>",
         whole},
        {'6', "09020A",
         "7E81014490201314434|7E9 10 0C 49 0A 01 41 42 43|7E8024100|7E9 21 44 45 46 47 48 49 FF|"
         "7E82147503030523535|7E82242313233343536||>",
         two},
        {'6', "0902", "7E8 10 14 49 02 01 31 44 34 ||>", "7E8=490201314434..."},
        {'6', "0902", "7E8 21 47 50 30 30 52 35 35|7E8 22 42 31 32 33 34 35 36||>", "7E8=..."},
        {'6', "03", "7E8 21 47 50 30 30 52 35 35|7E8100A430401020113|7E82101230222AAAAAA||>",
         "7E8=43040102011301230222"}, // a part of a former answer comes late
        {'6', "0902", "7E8 10 14 49 02 01 31 44 34|7E82242313233343536||>", "7E8=490201314434..."},
        {'6', "0902", "7E8 10 14 49 02 01 31 44 34|7E82147503030|7E82242313233343536||>",
         "7E8=49020131443447503030..."},
        // without headers
        {'6', "03", "00A|1:01230222AAAAAA|0:430401020113||>", "?1=43040102011301230222"},
        {'6', "03", "00A|0:430401020113|1:01230222AAAAAA||>", "?1=43040102011301230222"},
        {'6', "03",
         "00a|0: 43 04 01 02 01 13|1: 01 23 02 22 00 00 00|008|0: 43 03 01 00 02 00|1: 03 00 55||>",
         "?1=43040102011301230222 ?2=4303010002000300"},
        {'6', "03", "00A|0:430401020113|4300|1:01230222000000||>", "?1=43040102011301230222 ?2=4300"},
        {'6', "03", "00A|0:430401020113|00A|0:430411021113|1:01230222000000|1:11231222000000||>",
         "?1=430401020113... ?2=430411021113..."}, // whose is a part?
        {'6', "03", "00A|0:430401020113|00A|0:430401020113|1:01230222000000|1:01240222000000||>",
         "?1=43040102011301230222 ?2=43040102011301240222"},
        {'6', "0902", "014|1:47503030523535|2:42313233343536||>", "?1=..."},
        {'6', "03", "0:430401020113|1:01230222000000||>", "?1=43040102011301230222000000..."},
        {'6', "03", "10 0A 43 04 01 02 01 13|21 01 23 02 22 00 00 00||>", "?1=43040102011301230222"},
    });
}

TEST(VehicleReplyTest, CountsOnBeyondSixteenFrames)
{
    for (const bool hasHeaders : {true, false}) {
        std::string reply = hasHeaders ? "7E8 10 FB 43 7C 00 00 00 00\r" : "0FB\r0:437C00000000\r";
        std::string swapped = "";
        for (int i = 1; i <= 35; ++i) {
            const std::string number = hexText(i % 16, 1);
            const std::string line = (hasHeaders ? "7E8 2" + number : number + ":") +
                                     (i == 20 ? "00000000000001\r" : "00000000000000\r");
            reply += i == 3 || i == 18 ? "" : line;
            swapped = i == 3 || i == 18 ? line : swapped;
            if (i == 4 || i == 19)
                reply += swapped;
        }
        const VehicleReply read = readVehicleReply("03", reply + ">", BusProtocol::can11At500);
        ASSERT_EQ(read.messages.size(), 1U);
        const UnitMessage& message = read.messages.front();
        EXPECT_FALSE(message.isIncomplete);
        ASSERT_EQ(message.bytes.size(), 0xFBU);
        EXPECT_EQ(message.bytes[6 + 7 * 19 + 6], 1);
    }
}

TEST(VehicleReplyTest, ChecksAndCutsTheFramesOfOlderBuses)
{
    expectTold({
        {'1', "0100", "41 6B 10 41 0C 1A F8 3D|41 6B 10 41 00 BE 3E B8 11 BE||>", "10=4100BE3EB811..."},
        {'1', "010C", "41 6B 10 41 0C 1A F8 3D||>", "10=410C1AF8"},
        {'1', "010C", "41 6B 10 41 0C 1A F8 3D 10||>", "10=410C1AF8"}, // acknowledged in the frame
        {'2', "0100", "486B104100BE3EB811FA||>", "10=4100BE3EB811"},
        {'3', "010C", "48 6B 11 41 0C 1F 40 70||>", "11=410C1F40"},
        {'3', "010C", "48 6B 11 41 0C 1F 41 70||>", "11=410C1F41..."},
        {'2', "010C", "48 6B 11 41 0C 1F 40 70||>", "11=410C1F40"}, // a sum, whatever the protocol says
        {'0', "010C", "48 6B 11 41 0C 1F 40 70||>", "11=410C1F40"},
        {'5', "0100", "86 F1 10 41 00 BE 3F E8 11 BE|80 F1 11 06 41 00 BE 3F E8 11 BF||>",
         "10=4100BE3FE811 11=4100BE3FE811"},
        {'3', "010C", "48 6B 11 41 0C 1F 4||>", "11=410C..."},
        {'4', "010C", "84F111410C1F4032||>", "11=410C1F40"},
        {'4', "010C", "84F111410C1F4033|84F112410C1F||>", "11=410C1F40... 12=410C1F..."},
        {'5', "03", "87 F1 18 43 00 00 00 00 00 00 D3|87 F1 18 43 00 00 00 00 00 00 D3||>",
         "18=43000000000000"},
        {'3', "010C", "84 F1 11 41 0C 1F 40 32||>", "11=410C1F40"},
        // without headers, and with the checksum
        {'3', "03", "43 01 33 03 01 00 00|43 01 33 03 01 00 00 7A||>", "?1=43013303010000 ?2=43013303010000"},
        {'3', "0902", "49020100000057|49020241555A5A|49020100000058|49020242555A5A||>",
         "?1=49020100000057 ?1=49020241555A5A ?2=49020100000058 ?2=49020242555A5A"},
        {'5', "0606", "460603005A9C40|460605005A9C40||>", "?1=460603005A9C40 ?1=460605005A9C40"},
    });
}

TEST(VehicleReplyTest, TakesAnswersToTheRequestAlone)
{
    expectTold({
        {'6', "010C1", "010C1|41 0C 0B B1 00 00 00 |>", "?1=410C0BB1000000"},
        {'6', "010C", "01 0C 1|410D20|410C0BB1|430101 33||>", "?1=410C0BB1"},
        {'6', "0A", "0A|00A|0:4A0401020113|1:01230222000000||>", "?1=4A040102011301230222"},
        {'6', "03", "034|0:431901020113||>", "?1=431901020113..."}, // a length, no echo
        {'6', "020C01", "7E8 05 42 0C 00 0D 80|7E8 05 42 0C 01 0D 84||>", "7E8=420C010D84"},
        {'6', "0601", "7E8 06 46 00 C0 00 00 01|7E9 03 7F 06 31|7E9 03 7F 01 31||>", "7E9=7F0631"},
        {'6', "03", "7E8 03 7F 03 78|7E9 03 7F 03 78|7E8 04 43 01 01 33||>", "7E9=7F0378 7E8=43010133"},
        {'6', "03", "7F0378|7F0378|43010133||>", "?1=43010133"},
        {'6', "03", "7F0378|7F0378||>", "?1=7F0378"},
        {'6', "03", "7E8 02 43 00|7E8 02 43 00|7E9 02 43 00||>", "7E8=4300 7E9=4300"},
        {'6', "03", "4300|4300||>", "?1=4300 ?2=4300"},
        {'6', "0101", "7E8 04 41 0C 0D 80||>", "+15"},
        {'6', "", "7E8 02 43 00||>", "7E8=4300"},
    });
}

TEST(VehicleReplyTest, TellsTheTextsOfAdapters)
{
    const auto number = [](ReplyError error) { return "+" + std::to_string(static_cast<int>(error)); };
    using enum ReplyError;
    const struct {
        std::string_view request, reply;
        ReplyError error;
    } rows[] = {
        {"0100", "SEARCHING...|UNABLE TO CONNECT||>", unableToConnect},
        {"0100", "BUS INIT: ...ERROR||>", busInitError},
        {"0100", "BUS INIT:ERROR||>", busInitError},
        {"0100", "BUSINIT ERROR||>", busInitError},
        {"0100", "BUS INIT: ...|ERROR||>", busInitError},
        {"0100", "no data||>", noData},
        {"0100", "ERR94||>", canError},
        {"0100", "FB ERROR||>", busError},
        {"0100", "SEARCHING...|STOPPED", stopped},
        {"0100", "LV RESET|ELM327 v1.5||>", lowVoltageReset},
        {"0100", "7E8 06 41 00 BE 3F A8 <RX ERROR||>", rxError},
        {"ATMA", "231 00 <DATA ERROR|4B0 27 10 27 10||>", dataError},
        {"\x7F\x7F", "\x7F\x7F|?||>", unknownCommand},
        {"ATI", "ATI|ELM327 v1.5||>", none},
        {"ATH1", "OK||>", none},
        {"ATH1", "||>", empty},
        {"0100", "0100|SEARCHING...||>", empty},
        {"0100", "SEARCHING...", noPrompt},
        {"0100", "LM327410v2 ELMv241 M2.11099||>", garbled},
        {"0100", "FC FF 12||>", garbled},
    };
    for (const auto& [request, reply, error] : rows)
        EXPECT_EQ(told({'0', request, reply, ""}), error == none ? "" : number(error)) << reply;
    expectTold({
        {'0', "0100", "\xFC|SEARCHING...41 00 BE 3F A8 13||>", "?1=4100BE3FA813"},
        {'3', "0100", "BUS INIT: ...OK|OK|41 00 BE 3F A8 13", "?1=4100BE3FA813"},
        {'6', "0100", "7E8064100BE3FA813|BUFFER FULL||>", "7E8=4100BE3FA813" + number(bufferFull)},
        {'6', "0100", "7E8064100BE3F", "7E8=4100BE3F..." + number(noPrompt)},
    });
    const std::string withNul("41\0 0C 0D 80\r\0\r>", 17);
    EXPECT_EQ(readVehicleReply("010C", withNul, BusProtocol::unknown).messages.size(), 1U);
}

TEST(VehicleReplyTest, TellsCanByTheForm)
{
    const struct {
        std::string_view reply;
        std::optional<bool> isCan;
    } rows[] = {
        {"18 DA F1 10 02 43 00\r>", true},
        {"00A\r0:430401020113\r1:01230222000000\r>", true},
        {"87 F1 18 43 00 00 00 00 00 00 D3\r>", false},
        {"48 6B 10 43 00 00 00 00 00 00 06\r>", false},
        {"43 00 00 00 00 00 00\r>", std::nullopt},
    };
    for (const auto& [reply, isCan] : rows)
        EXPECT_EQ(readVehicleReply("03", reply, BusProtocol::unknown).isCan, isCan) << reply;
}

} // namespace
} // namespace zint
