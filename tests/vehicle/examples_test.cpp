#include "vehicle/exchangeJson.h"
#include "vehicle/transcript.h"

#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

/// What real cars have answered, what is seldom answered, and what it means.
namespace zint {
namespace {

using Json = nlohmann::json;

/// All that is expected and nothing else, numbers to their third decimal.
void expectTold(const Json& told, const Json& expected)
{
    if (expected.is_number() && told.is_number()) {
        EXPECT_NEAR(told.get<double>(), expected.get<double>(), 0.0006);
    } else if (!expected.is_structured()) {
        EXPECT_EQ(told, expected);
    } else {
        EXPECT_EQ(told.size(), expected.size()) << told;
        for (const auto& [key, value] : expected.items())
            expectTold(expected.is_array() ? told.at(std::stoul(key)) : told.value(key, Json()), value);
    }
}

void expectMeanings(const std::string& path, int wanted)
{
    std::ifstream file(path);
    int count = 0;
    for (std::string line; std::getline(file, line); ++count) {
        const Json example = Json::parse(line);
        const std::string transcript = example["transcript"];
        SCOPED_TRACE(example["id"].get<std::string>() + "\n" + transcript);
        expectTold(Json::parse(exchangesJson(replay(transcript)))["exchanges"], example["exchanges"]);
        const std::string protocol(1, static_cast<char>(readTranscript(transcript)[0].protocol));
        EXPECT_EQ(example.value("protocolFound", protocol), protocol);
    }
    EXPECT_EQ(count, wanted);
}

TEST(ExamplesTest, MeanWhatTheyMean)
{
    expectMeanings(ZINT_EXAMPLES "/fieldExamples.jsonl", 50);
    expectMeanings(ZINT_EXAMPLES "/rareExamples.jsonl", 25);
}

} // namespace
} // namespace zint
