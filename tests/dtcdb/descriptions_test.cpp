#include "dtcdb/dtcText.h"
#include "sim/simulationOptions.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>
#include <sstream>

namespace zint {
namespace {

using Codes = std::set<std::string>;

std::string decimalCode(int number)
{
    char text[16];
    std::snprintf(text, sizeof text, "P%04d", number);
    return text;
}

std::string hexCode(int number)
{
    char text[16];
    std::snprintf(text, sizeof text, "P%04X", static_cast<unsigned>(number));
    return text;
}

int number(const std::string& code, int base) { return std::stoi(code.substr(1), nullptr, base); }

bool isDecimal(const std::string& code)
{
    return std::all_of(code.begin() + 1, code.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
}

/// Most families were numbered when codes held decimal digits only, so P0250 as well as P024A follows P0249.
bool follows(const std::string& code, const std::string& before)
{
    return code[0] == before[0] &&
           (number(code, 16) == number(before, 16) + 1 ||
            (isDecimal(code) && isDecimal(before) && number(code, 10) == number(before, 10) + 1));
}

bool isNear(const std::string& one, const std::string& other)
{
    return one[0] == other[0] && std::abs(number(one, 16) - number(other, 16)) < 8;
}

/// Nothing when the text does not hold the part.
std::string replaced(std::string text, std::string_view part, std::string_view by)
{
    const std::size_t at = text.find(part);
    return at == std::string::npos ? std::string() : text.replace(at, part.size(), by);
}

/// The descriptions that come with the program.
class DescriptionsTest : public testing::Test {
protected:
    static constexpr DtcTextOptions form_{.noNotes = true};

    static void SetUpTestSuite()
    {
        std::istringstream file(contents(ZINT_DATA_FOLDER "/dtc.txt"));
        for (std::string line; std::getline(file, line);) {
            lines_.push_back(line);
            const DtcRecord record = readDtcLine(line, form_);
            texts_[record.code] = record.description;
            codes_[record.description] = record.code;
        }
    }

    static void TearDownTestSuite()
    {
        lines_.clear();
        texts_.clear();
        codes_.clear();
    }

    static std::string text(const std::string& code)
    {
        const auto found = texts_.find(code);
        return found == texts_.end() ? "none" : found->second;
    }

    /// The code of a description, nothing when there is no such description.
    static std::string codeOf(const std::string& text)
    {
        const auto found = codes_.find(text);
        return found == codes_.end() ? std::string() : found->second;
    }

    /// Where a description has a counterpart with other words, both stand side by side.
    static void checkOrder(std::string_view first, std::string_view second, const Codes& otherwise)
    {
        int pairs = 0;
        for (const auto& [code, text] : texts_) {
            const std::string twin = codeOf(replaced(text, first, second));
            if (twin.empty() || !isNear(code, twin))
                continue;
            ++pairs;
            EXPECT_NE(follows(twin, code), otherwise.contains(code)) << code << " and " << twin;
        }
        EXPECT_GT(pairs, 5) << first;
    }

    inline static std::vector<std::string> lines_;
    inline static std::map<std::string, std::string> texts_;
    inline static std::map<std::string, std::string> codes_;
};

TEST_F(DescriptionsTest, AreWellFormedSortedAndUnique)
{
    std::string before;
    Codes used;
    for (const std::string& line : lines_) {
        const DtcRecord record = readDtcLine(line, form_);
        EXPECT_EQ(dtcLine(record, form_), line);
        EXPECT_EQ(codeFault(record.code), 0) << line;
        EXPECT_LT(before, record.code);
        before = record.code;

        const std::string& description = record.description;
        EXPECT_TRUE(description.size() >= 10 && description.size() <= 100) << line;
        EXPECT_TRUE(std::all_of(description.begin(), description.end(), [](char c) {
            return c >= ' ' && c <= '~' && c != ',';
        })) << line;
        EXPECT_TRUE(std::isupper(static_cast<unsigned char>(description.front()))) << line;
        EXPECT_TRUE(description.find("  ") == std::string::npos && !description.ends_with(' ')) << line;
        EXPECT_EQ(std::count(description.begin(), description.end(), '('),
                  std::count(description.begin(), description.end(), ')'))
            << line;

        std::string key = description;
        std::transform(key.begin(), key.end(), key.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        EXPECT_TRUE(used.insert(key).second) << line;
    }
    EXPECT_GE(lines_.size(), 3000U);
}

TEST_F(DescriptionsTest, StayInTheStandardisedRanges)
{
    const Codes ranges{"P0", "P2", "U0", "U3", "B0", "C0"};
    for (const auto& [code, text] : texts_)
        EXPECT_TRUE(ranges.contains(code.substr(0, 2)) || (code >= "P3400" && code <= "P3FFF")) << code;
}

TEST_F(DescriptionsTest, CountCylindersAndCoils)
{
    struct Family {
        std::string (*code)(int);
        int first;
        int step;
        const char* text;
    };
    for (const Family& family : {
             Family{decimalCode, 301, 1, " misfire detected"},
             {decimalCode, 201, 1, " injector circuit/open"},
             {decimalCode, 261, 3, " injector circuit low"},
             {decimalCode, 262, 3, " injector circuit high"},
             {decimalCode, 263, 3, " contribution/balance"},
             {decimalCode, 671, 1, " glow plug circuit/open"},
             {decimalCode, 2336, 1, " above knock threshold"},
             {decimalCode, 3401, 8, " deactivation/intake valve control circuit/open"},
             {decimalCode, 3402, 8, " deactivation/intake valve control performance"},
             {decimalCode, 3405, 8, " exhaust valve control circuit/open"},
             {decimalCode, 3406, 8, " exhaust valve control performance"},
             {hexCode, 0x29A, 4, " fuel trim at maximum limit"},
             {hexCode, 0x29B, 4, " fuel trim at minimum limit"},
             {hexCode, 0x29C, 4, " injector restricted"},
             {hexCode, 0x29D, 4, " injector leaking"},
             {hexCode, 0x2EE, 1, " injector circuit range/performance"},
             {hexCode, 0x6B9, 1, " glow plug circuit range/performance"},
             {hexCode, 0x6C5, 1, " incorrect glow plug"},
             {hexCode, 0x219C, 1, " air-fuel ratio imbalance"},
         })
        for (int i = 0; i < 12; ++i) {
            const std::string code = family.code(family.first + family.step * i);
            EXPECT_EQ(text(code), "Cylinder " + std::to_string(i + 1) + family.text) << code;
        }

    for (int i = 0; i < 12; ++i) {
        const std::string coil = std::string("Ignition coil ") + static_cast<char>('A' + i);
        EXPECT_EQ(text(decimalCode(351 + i)), coil + " primary/secondary circuit");
        EXPECT_EQ(text(decimalCode(2300 + 3 * i)), coil + " primary control circuit low");
        EXPECT_EQ(text(decimalCode(2301 + 3 * i)), coil + " primary control circuit high");
        EXPECT_EQ(text(decimalCode(2302 + 3 * i)), coil + " secondary circuit");
    }
}

TEST_F(DescriptionsTest, CountBanksAndSensors)
{
    for (int bank = 1; bank <= 2; ++bank) {
        for (int sensor = 1; sensor <= 3; ++sensor) {
            const int position = 3 * (bank - 1) + sensor - 1;
            const auto expect = [&](int code, const std::string& what) {
                EXPECT_EQ(text(decimalCode(code)), "O2 sensor " + what + " (bank " + std::to_string(bank) +
                                                       " sensor " + std::to_string(sensor) + ")")
                    << decimalCode(code);
            };
            const int signal = 130 + 20 * (bank - 1) + 6 * (sensor - 1);
            expect(signal, "circuit");
            expect(signal + 1, "circuit low voltage");
            expect(signal + 2, "circuit high voltage");
            expect(signal + 3, "circuit slow response");
            expect(signal + 4, "circuit no activity detected");
            expect(signal + 5, "heater circuit");
            const int heater = 30 + 20 * (bank - 1) + 6 * (sensor - 1);
            expect(heater, "heater control circuit");
            expect(heater + 1, "heater control circuit low");
            expect(heater + 2, "heater control circuit high");
            const int resistances[] = {53, 54, 55, 59, 60, 61};
            expect(resistances[position], "heater resistance");
            const int biased[] = {2195, 2270, 2274, 2197, 2272, 2276};
            expect(biased[position], "signal biased/stuck lean");
            expect(biased[position] + 1, "signal biased/stuck rich");
            expect(2231 + position, "signal circuit shorted to heater circuit");
        }

        const std::string suffix = " (bank " + std::to_string(bank) + ")";
        const int next = bank - 1;
        for (int camshaft = 0; camshaft < 2; ++camshaft) {
            const std::string name = std::string("Camshaft position ") + (camshaft == 0 ? "A" : "B");
            const std::string actuator =
                std::string("Camshaft position actuator ") + (camshaft == 0 ? "A" : "B");
            const int code = 10 + 10 * next + 3 * camshaft;
            EXPECT_EQ(text(decimalCode(code)), actuator + " circuit/open" + suffix);
            EXPECT_EQ(text(decimalCode(code + 1)),
                      name + " timing over-advanced or system performance" + suffix);
            EXPECT_EQ(text(decimalCode(code + 2)), name + " timing over-retarded" + suffix);
            EXPECT_EQ(text(decimalCode(16 + 2 * next + camshaft)),
                      "Crankshaft position to camshaft position correlation (bank " + std::to_string(bank) +
                          " sensor " + (camshaft == 0 ? "A)" : "B)"));
        }
        EXPECT_EQ(text(decimalCode(170 + 3 * next)), "Fuel trim fault" + suffix);
        EXPECT_EQ(text(decimalCode(171 + 3 * next)), "System too lean" + suffix);
        EXPECT_EQ(text(decimalCode(172 + 3 * next)), "System too rich" + suffix);
        EXPECT_EQ(text(decimalCode(2177 + 2 * next)), "System too lean off idle" + suffix);
        EXPECT_EQ(text(decimalCode(2187 + 2 * next)), "System too lean at idle" + suffix);
        EXPECT_EQ(text(decimalCode(420 + 10 * next)), "Catalyst system efficiency below threshold" + suffix);
        EXPECT_EQ(text(decimalCode(491 + next)), "Secondary air injection system insufficient flow" + suffix);
    }
}

TEST_F(DescriptionsTest, HaveTheirCounterpartsSideBySide)
{
    // One code tells of all but a low signal, another has no counterpart.
    const Codes single{"P0502", "P2160"};
    for (const auto& [code, text] : texts_)
        for (const std::string_view where : {"circuit", "(+)", "(-)", "signal"}) {
            const std::string low = std::string(where) + " low";
            const std::string high = std::string(where) + " high";
            if (!single.contains(code) && text.find(low) != std::string::npos) {
                EXPECT_NE(codeOf(replaced(text, low, high)), "") << code;
            }
            // "Timing reference high resolution signal" and "high" of a measured value are no such pairs.
            if (text.find(high) != std::string::npos && text.find(high + " ") == std::string::npos) {
                EXPECT_NE(codeOf(replaced(text, high, low)), "") << code;
            }
        }

    // The standard has these the other way round or has others in between.
    checkOrder(" low", " high", {"P0497", "P0A09", "P0A19", "P2174", "P2175", "P2764"});
    checkOrder("too lean", "too rich", {});
    checkOrder("stuck lean", "stuck rich", {});
    checkOrder("rich to lean", "lean to rich", {});
    checkOrder("stuck open", "stuck closed", {"P0AA2", "P0AA5", "P0AE3", "P2004", "P2005"});
    checkOrder("performance or stuck off", "stuck on", {});
    checkOrder(" circuit", " circuit range/performance", {"P0515", "P0589"});
    checkOrder(" circuit/open", " circuit range/performance", {"P0033", "P0627", "P06A3", "P2605"});
}

TEST_F(DescriptionsTest, KnowBothBanks)
{
    // These are numbered before their counterparts; knock sensors count on over the banks.
    const Codes before{"P00AA", "P00AB", "P00AC", "P00AD", "P00AE", "P206E", "P206F"};
    int pairs = 0;
    for (const auto& [code, text] : texts_) {
        if (text.find("(bank 2") == std::string::npos || text.find("/ bank") != std::string::npos ||
            text.starts_with("Knock sensor"))
            continue;
        std::string twin = codeOf(replaced(text, "(bank 2", "(bank 1"));
        if (twin.empty())
            twin = codeOf(replaced(text, "(bank 2)", "(bank 1 or single sensor)"));
        EXPECT_NE(twin, "") << code;
        EXPECT_NE(twin < code, before.contains(code)) << code << " and " << twin;
        ++pairs;
    }
    EXPECT_GT(pairs, 100);
}

TEST_F(DescriptionsTest, NameTheSameModules)
{
    const std::string lost = "Lost communication with ";
    const std::string invalid = "Invalid data received from ";
    const std::string incompatible = "Software incompatibility with ";
    int numbered = 0;
    for (const auto& [code, text] : texts_) {
        for (const std::string& what : {invalid, incompatible})
            if (text.starts_with(what)) {
                EXPECT_NE(codeOf(lost + text.substr(what.size())), "") << code;
            }
        if (!text.starts_with(invalid) || !isDecimal(code))
            continue;
        const std::string module = text.substr(invalid.size());
        const int at = number(code, 10);
        // Up to here the modules are those whose software is checked.
        if (at <= 431) {
            EXPECT_EQ(codeOf(incompatible + module), "U0" + std::to_string(at - 100)) << code;
        }
        if (at <= 409 || at >= 434) {
            EXPECT_EQ(codeOf(lost + module), "U0" + std::to_string(at - 301)) << code;
        }
        ++numbered;
    }
    EXPECT_GT(numbered, 40);
}

TEST_F(DescriptionsTest, CoverTheSimulatedVehicle)
{
    const VehicleOptions vehicle;
    for (const auto& codes : {vehicle.storedCodes, vehicle.pendingCodes})
        for (const std::string& code : codes)
            EXPECT_NE(text(code), "none") << code;
}

} // namespace
} // namespace zint
