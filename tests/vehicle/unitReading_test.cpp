#include "vehicle/exchangeJson.h"
#include "vehicle/testNames.h"
#include "vehicle/transcript.h"
#include "vehicle/unitReading.h"
#include "vehicle/vin.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace zint {
namespace {

/// What the units of a transcript tell, as JSON in one line; of the last exchange.
std::string told(const std::string& transcript)
{
    return exchangeJson(replay(transcript).back())["units"].dump();
}

TEST(UnitReadingTest, NamesTheCountersOfCompressionIgnition)
{
    std::string reply = "# protocol 5\n> 090B\n";
    for (int i = 1; i <= 9; ++i)
        reply += "49 0B 0" + std::to_string(i) + " 00 0" + std::to_string(i) + " 01 00\n";
    const auto units = nlohmann::ordered_json::parse(told(reply));
    EXPECT_EQ(units["?1"]["counters"].size(), 18U);
    EXPECT_EQ(units["?1"]["counters"]["BPCOMP"], 8);
    EXPECT_EQ(units["?1"]["counters"]["FUELCOND"], 256);
}

TEST(UnitReadingTest, ReadsByWhatTheUnitToldBefore)
{
    EXPECT_EQ(told("# protocol 6\n> 0100\n7E8 06 41 00 00 00 00 08\n> 0106\n7E8 04 41 06 80 C0"),
              R"({"7E8":{"values":{"0106":{"value":0,"unit":"%","fields":[)"
              R"({"name":"Short term fuel trim, bank 1","value":0,"unit":"%"},)"
              R"({"name":"Short term fuel trim, bank 3","value":50,"unit":"%"}]}}}})");
    EXPECT_EQ(monitorName(0xB0) + monitorName(0xB1, true) + monitorName(0x06) + monitorName(0xE1),
              "Particulate filter bank 1Misfire cylinder 16O2 sensor bank 2 sensor 2");
    EXPECT_EQ(sensorName(0x04, true) + sensorName(0x20, false) + sensorName(0x03, false),
              "O2 sensor bank 2 sensor 1O2 sensor bank 2 sensor 2O2 sensor 03");
}

TEST(UnitReadingTest, MergesWhatExchangesTell)
{
    UnitReading all;
    for (const ExchangeReading& reading :
         replay("# protocol 6\n> 0100\n7E8 06 41 00 80 00 00 01\n> 0120\n7E8 06 41 20 00 00 00 01\n"
                "> 010D\n7E8 03 41 0D 20\n> 020200\n7E8 05 42 02 00 01 33\n> 020C00\n7E8 05 42 0C 00 0D "
                "80\n> 0A\n7E8 03 7F 0A 22\n"
                "> 03\n7E8 02 43 00\n> 06A1\n7E8 10 0A 46 A1 0B 24 00 05\n7E8 21 00 00 FF FF\n"
                "> 06A1\n7E8 10 0A 46 A1 0B 24 00 07\n7E8 21 00 00 FF FF"))
        merge(all, reading.units.at(0).second);
    EXPECT_EQ(all.supported[1], (std::vector<std::uint8_t>{0x01, 0x20, 0x40}));
    EXPECT_EQ(all.freezeFrame->code, "P0133");
    EXPECT_EQ(all.freezeFrame->values.size() + all.values.size(), 2U);
    EXPECT_TRUE(all.codes.contains(CodeKind::stored) && !all.codes.contains(CodeKind::permanent));
    EXPECT_FALSE(all.refusal);
    ASSERT_EQ(all.tests.size(), 1U);
    EXPECT_EQ(all.tests[0].value, 7);
}

TEST(TranscriptTest, FindsProtocolsAndPrompts)
{
    const struct {
        const char* transcript;
        const char* protocols; ///< of the exchanges
    } rows[] = {
        {"> 0100\n> ATDPN\nA6\n> 0105", "666"},
        {"# protocol 3\n> 0100\n> AT DPN\nATDPN\n5\n>\n# Protocol: no number\n> 0101", "555"},
        {"> ATSP 3\nOK\n> 0100\n> ATDPN\nA0", "333"},
        {"> 0100\n> ATDP\nAUTO, SAE J1850 VPW\n> ATSP6", "222"},
        {"> ATTPA8\r\n# protocol a\r> 0100\n", "8A"},
        {"\xEF\xBB\xBF# protocol 0\n> 0100\n# protocol 1\n> 0100\n> ATSP6\n# protocol 9\n> 03", "6119"},
        {"no line was sent\n>\n", ""},
    };
    for (const auto& [transcript, protocols] : rows) {
        std::string found;
        for (const TranscriptExchange& exchange : readTranscript(transcript))
            found += static_cast<char>(exchange.protocol);
        EXPECT_EQ(found, protocols) << transcript;
    }
    const auto escapes = readTranscript("> \\x7f\\x7F\n\\xFC\\x0g\\x3e");
    EXPECT_EQ(escapes.at(0).command + escapes.at(0).written + escapes.at(0).reply,
              "\x7F\x7F\\x7f\\x7F\xFC\\x0g>\r");

    std::string errors;
    for (const ExchangeReading& reading :
         replay("# protocol 6\n> ATE0\nOK\n>\n> 0902\n7E8 10 14 49 02 01 31 32 33\n> 03\n7E8 02 43 00\n"
                "> 07\nNO DATA\n> 0A\n>\n> ATI\nELM327 v1.5"))
        errors += std::string(errorName(reading.error)) + ",";
    EXPECT_EQ(errors, ",noPrompt,,noData,empty,,");
    EXPECT_EQ(replay("> 0902\n7E8 10 14 49 02 01 31 32 33").at(0).error, ReplyError::none) << "no prompts";
    EXPECT_EQ(replay("> 0100\nSEARCHING...").at(0).error, ReplyError::noPrompt);
}

TEST(VinTest, IsHeldAgainstItsForm)
{
    EXPECT_EQ(checkVin("1M8GDM9AXKP042788"), (VinCheck{true, true, true}));
    EXPECT_EQ(checkVin("WBA3A5C50CF256651"), (VinCheck{true, true, false}));
    EXPECT_EQ(checkVin("1M8GDM9AXKPO42788"), (VinCheck{true, false, false}));
    EXPECT_EQ(checkVin("1M8GDM9AXKP"), (VinCheck{false, true, false}));
}

} // namespace
} // namespace zint
