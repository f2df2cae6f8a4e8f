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

TEST(UnitReadingTest, ReadsWhatServicesTell)
{
    const struct {
        const char* what;
        const char* transcript;
        const char* units;
    } rows[] = {
        {"permanent codes", "# protocol 6\n> 0A\n7E8 06 4A 02 04 20 00 16",
         R"({"7E8":{"codes":["P0420","P0016"]}})"},
        {"unknown bus, a count that fits", "> 03\n43 01 01 33", R"({"?1":{"codes":["P0133"]}})"},
        {"unknown bus, no count", "> 03\n43 01 01 33 00 00 00", R"({"?1":{"codes":["P0101","P3300"]}})"},
        {"unknown bus, CAN by another exchange",
         "> 0902\n014\n0: 49 02 01 31 44 34\n> 03\n43 01 01 33 00 00 00", R"({"?1":{"codes":["P0133"]}})"},
        {"a count of more than there is", "# protocol 6\n> 03\n7E8 04 43 02 01 33",
         R"({"7E8":{"codes":["P0133"],"incomplete":true}})"},
        {"no code and no count on CAN", "# protocol 6\n> 03\n7E8 01 43", R"({"7E8":{"incomplete":true}})"},
        {"cleared, refused for now", "# protocol 6\n> 04\n7E8 01 44\n7E9 03 7F 04 22",
         R"({"7E8":{"cleared":true},"7E9":{"refusal":"22"}})"},
        {"an answer that does not come", "# protocol 6\n> 03\n7E8 03 7F 03 78",
         R"({"7E8":{"refusal":"78","incomplete":true}})"},
        {"a clearing that the adapter tells of", "# protocol 3\n> 04\nOK", R"({"?1":{"cleared":true}})"},
        {"padding that looks like a list", "# protocol 6\n> 0100\n41 00 80 00 00 00 00",
         R"({"?1":{"supported":["01"]}})"},
        {"a freeze frame, words", "# protocol 6\n> 0202001C00\n42 02 00 00 00 1C 00 06",
         R"({"?1":{"freezeFrame":{"frame":0,"dtc":null,"values":{"1C":{"value":"EOBD","unit":""}}}}})"},
        {"busy at first", "# protocol 6\n> 03\n7E8 03 7F 03 21\n7E8 02 43 00", R"({"7E8":{"codes":[]}})"},
        {"several parameters, padding",
         "# protocol 6\n> 01050C\n7E8 06 41 0C 0D 80 05 39\n7E9 41 05 3A 00 00",
         R"({"7E8":{"values":{"0105":{"value":17,"unit":"°C"},"010C":{"value":864,"unit":"rpm"}}}})"},
        {"one of two parameters, padding", "# protocol 6\n> 020500 0D00\n42 05 00 39 00 00 00",
         R"({"?1":{"freezeFrame":{"frame":0,"values":{"05":{"value":17,"unit":"°C"}}}}})"},
        {"a parameter that is cut off", "# protocol 6\n> 010C\n7E8 03 41 0C 0D",
         R"({"7E8":{"incomplete":true}})"},
        {"this drive cycle", "# protocol 6\n> 0141\n7E8 06 41 41 00 0B 43 01",
         R"({"7E8":{"readiness":{"misfire":"complete","fuelSystem":"complete","components":"unsupported",)"
         R"("nmhcCatalyst":"incomplete","noxScr":"complete","boostPressure":"unsupported",)"
         R"("exhaustGasSensor":"unsupported","pmFilter":"complete","egrVvt":"unsupported"},)"
         R"("compressionIgnition":true}})"},
        {"a sensor test", "# protocol 3\n> 050501\n48 6B 10 45 05 01 20 10 30 6E",
         R"({"10":{"tests":[{"mid":"01","tid":"05","value":0.128,"min":0.064,"max":0.192,"unit":"s",)"
         R"("passed":true,"name":"O2 sensor bank 1 sensor 1: Rich to lean switch time"}]}})"},
        {"a sensor's constant", "# protocol 3\n> 050102\n45 01 02 5A",
         R"({"?1":{"tests":[{"mid":"02","tid":"01","value":0.45,"min":null,"max":null,"unit":"V",)"
         R"("passed":null,"name":"O2 sensor bank 1 sensor 2: Rich to lean threshold voltage"}]}})"},
        {"a signed test below its limit",
         "# protocol 6\n> 06A2\n00A\n0: 46 A2 80 96 FF 9C\n1: FF FF 00 64 00 00 00",
         R"({"?1":{"tests":[{"mid":"A2","tid":"80","value":-10,"min":-0.1,"max":10,"unit":"°C",)"
         R"("passed":false,"name":"Misfire cylinder 1"}]}})"},
        {"supported tests, older form", "# protocol 5\n> 0600\n87 F1 10 46 00 FF 00 00 00 01 CE",
         R"({"10":{"supported":["20"]}})"},
        {"a VIN without its fourth message",
         "# protocol 4\n> 0902\n87 F1 10 49 02 01 00 00 00 31 05\n87 F1 10 49 02 02 44 34 47 50 E4\n"
         "87 F1 10 49 02 03 30 30 52 35 BD\n87 F1 10 49 02 05 33 34 35 36 AA",
         R"({"10":{"incomplete":true}})"},
        {"a headerless line that comes twice",
         "# protocol 3\n> 0902\n49 02 01 00 00 00 31\n49 02 02 44 34 47 50\n49 02 02 44 34 47 50\n"
         "49 02 03 30 30 52 35\n49 02 04 35 42 31 32\n49 02 05 33 34 35 36",
         R"({"?1":{"vin":"1D4GP00R55B123456"}})"},
        {"two headerless units, mixed",
         "# protocol 3\n> 0904\n49 04 01 41 42 43 44\n49 04 01 61 62 63 64\n49 04 02 45 00 00 00\n"
         "49 04 02 65 00 00 00\n49 04 03 00 00 00 00\n49 04 03 00 00 00 00\n49 04 04 00 00 00 00\n"
         "49 04 04 00 00 00 00",
         R"({"?1":{"calibrationIds":["ABCDE"]},"?2":{"calibrationIds":["abcde"]}})"},
        {"two CVNs", "# protocol 6\n> 0906\n00B\n0: 49 06 02 12 34 56\n1: 78 00 00 AB CD 00 00",
         R"({"?1":{"cvns":["12345678","0000ABCD"]}})"},
        {"a serial number, a counter by the bus", "# protocol 6\n> 0912\n7E8 05 49 12 01 01 02",
         R"({"7E8":{"info":{"12":"258"}}})"},
    };
    for (const auto& [what, transcript, units] : rows)
        EXPECT_EQ(told(transcript), units) << what;
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
