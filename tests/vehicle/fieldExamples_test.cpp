#include "shared/module1.h"
#include "vehicle/exchangeJson.h"
#include "vehicle/transcript.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>

/// What real cars have answered, and what it means.
namespace zint {
namespace {

using Json = nlohmann::ordered_json;

/// The characters of a reply as the bytes they came as.
std::string escaped(const std::string& text)
{
    std::string line;
    for (const char32_t character : std::filesystem::path(utf8Path(text)).u32string())
        line += character < ' ' || character > '~' ? "\\x" + hexText(static_cast<int>(character), 2)
                                                   : std::string(1, static_cast<char>(character));
    return line;
}

std::string transcriptOf(const Json& example)
{
    // A protocol that the replies tell is to be found in them.
    const bool isTold = example["protocol"].is_string() && !example["expect"].contains("protocolFound");
    std::string text = isTold ? "# protocol " + example["protocol"].get<std::string>() + "\n" : "";
    for (const Json& exchange : example["exchange"]) {
        text += "> " + escaped(exchange["send"]) + "\n";
        std::istringstream reply(exchange["reply"].get<std::string>());
        for (std::string line; std::getline(reply, line, '\r');)
            text += escaped(line) + "\n";
    }
    return text;
}

/// All that the units have told, by what the examples call it: {"vin": {"7E8": ...}}.
Json allTold(const std::string& transcript)
{
    static const std::map<std::string, std::string> names = {
        {"03", "stored"},   {"07", "pending"},     {"0A", "permanent"},
        {"refusal", "nrc"}, {"0900", "infoTypes"}, {"calibrationIds", "calid"}};
    const auto nameOf = [](const std::string& own) { return names.contains(own) ? names.at(own) : own; };
    Json all = Json::object();
    for (const ExchangeReading& reading : replay(transcript)) {
        const Json exchange = exchangeJson(reading);
        const std::string command = exchange["command"];
        if (exchange.contains("error"))
            all["errors"].push_back(exchange["error"]);
        for (const auto& [unit, members] : exchange["units"].items()) {
            for (const auto& [member, value] : members.items()) {
                const bool isByCommand = member == "codes" || (member == "supported" && command == "0900");
                Json& place = all[nameOf(isByCommand ? command : member)][unit];
                if (member == "supported" && !place.is_null())
                    place.insert(place.end(), value.begin(), value.end());
                else if (value.is_object())
                    place.merge_patch(value);
                else
                    place = value;
            }
        }
    }
    return all;
}

void expectNumber(const Json& value, const std::string& expected)
{
    const std::size_t blank = expected.find(' ');
    const std::size_t point = expected.find('.');
    const int decimals = point < blank ? static_cast<int>(blank - point) - 1 : 0;
    ASSERT_TRUE(value.contains("value")) << value << expected;
    EXPECT_NEAR(value["value"].get<double>(), std::stod(expected), 0.501 * std::pow(10, -decimals));
    EXPECT_EQ(value["unit"], expected.substr(blank + 1));
}

void expectValues(const Json& values, const Json& expected)
{
    EXPECT_EQ(values.size(), expected.size());
    for (const auto& [pid, text] : expected.items()) {
        const Json value = values.value(pid, Json::object());
        if (value.value("unit", "") == "") {
            EXPECT_EQ(value["value"], text) << pid;
        } else {
            expectNumber(value, text.get<std::string>());
        }
    }
}

void expectFrames(const Json& frames, const Json& expected)
{
    for (const auto& [unit, frame] : expected.items()) {
        EXPECT_EQ(frames[unit]["frame"], frame["frame"]);
        EXPECT_EQ(frames[unit].value("dtc", Json()), frame["dtc"]);
        expectValues(frames[unit].value("values", Json::object()), frame.value("values", Json::object()));
    }
}

void expectTests(const Json& units, const Json& expected, const std::string& name)
{
    for (const auto& [unit, tests] : expected[name].items()) {
        ASSERT_EQ(units[unit].size(), tests.size());
        for (std::size_t i = 0; i < tests.size(); ++i) {
            const Json& own = units[unit][i];
            const Json& test = tests[i];
            EXPECT_EQ(own["tid"], test["tid"]);
            EXPECT_EQ(own["mid"], test.contains("mid") ? test["mid"] : test["component"]);
            EXPECT_EQ(own["passed"], expected.contains("passed") ? expected["passed"][i] : Json());
            if (test.contains("limit")) {
                EXPECT_EQ(own["value"], test["value"]);
                EXPECT_EQ(own[test["limitType"].get<std::string>()], test["limit"]);
                EXPECT_EQ(own["min"].is_null(), test["limitType"] == "max");
            } else if (expected.contains("scaled")) {
                const std::string scaled = expected["scaled"][i];
                expectNumber(own, scaled.substr(0, scaled.find(" (")));
            } else {
                EXPECT_EQ(own["value"], 0);
            }
        }
    }
}

void expectMember(Json& all, const std::string& name, const Json& expect)
{
    const Json& expected = expect[name];
    if (name == "error") {
        const bool isOfUnit = expected == "incomplete" || expected == "negativeResponse";
        EXPECT_TRUE(isOfUnit || all["errors"][0] == expected) << all;
        EXPECT_EQ(all.contains("incomplete"), expected == "incomplete");
    } else if (expected.is_null()) {
        EXPECT_FALSE(all.contains(name));
    } else if (name == "values") {
        for (const auto& [unit, values] : expected.items())
            expectValues(all[name][unit], values);
    } else if (name == "freezeFrame") {
        expectFrames(all[name], expected);
    } else if (name == "tests" || name == "oldTests") {
        expectTests(all["tests"], expect, name);
    } else {
        EXPECT_EQ(nlohmann::json(all[name]), nlohmann::json(expected)); // in whatever order units answer
    }
}

TEST(FieldExamplesTest, MeanWhatTheyMean)
{
    const std::vector<std::string> elsewhere = {"passed", "scaled", "supportedCount", "automatic"};
    std::ifstream file(ZINT_FIELD_EXAMPLES);
    int count = 0;
    for (std::string line; std::getline(file, line); ++count) {
        const Json example = Json::parse(line);
        const std::string transcript = transcriptOf(example);
        SCOPED_TRACE(example["id"].get<std::string>() + "\n" + transcript);
        Json all = allTold(transcript);
        for (const auto& [name, expected] : example["expect"].items()) {
            if (name == "protocolFound") {
                EXPECT_EQ(expected,
                          std::string(1, static_cast<char>(readTranscript(transcript)[0].protocol)));
            } else if (std::ranges::find(elsewhere, name) == elsewhere.end()) {
                expectMember(all, name, example["expect"]);
            }
        }
    }
    EXPECT_EQ(count, 50);
}

} // namespace
} // namespace zint
