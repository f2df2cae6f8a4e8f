#include "parameters/eventList.h"
#include "support/failure.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

OwnParameters twoOwn()
{
    OwnParameters own;
    own.put({.name = "Oil temp", .request = "221940", .formula = "A-40"});
    own.put({.name = "Gear, wanted", .request = "22F40C", .formula = "A"});
    return own;
}

TEST(EventListTest, FindsWhatIsMeant)
{
    const std::pair<std::vector<std::string>, const char*> rows[] = {
        {{"0C"}, "010C 5120"},
        {{"010c,0105"}, "010C 5120, 0105 5050"},
        {{" 2f ", "221940"}, "012F 5470, 221940 10000"},
        {{"Gear, wanted"}, "22F40C 10001"},
        {{"oil TEMP", "Fuel level"}, "221940 10000, 012F 5470"},
        {{"0114"}, "0114 5200, 0114 5201"},
        {{"01F0", "0902"}, "01F0 0, 0902 0"},
    };
    for (const auto& [texts, expected] : rows) {
        std::string found;
        for (const DesignEntry& event : eventsNamed(texts, twoOwn(), UnitSystem::imperial))
            found += (found.empty() ? "" : ", ") + event.code + " " + std::to_string(event.conversion);
        EXPECT_EQ(found, expected);
    }
}

TEST(EventListTest, TellsWhatIsNotClear)
{
    const std::pair<std::vector<std::string>, const char*> rows[] = {
        {{""}, "an event without a name"},
        {{"trim"}, " parameters: "},
        {std::vector<std::string>(Design::maxEvents + 1, "0C"), "these are 65 events; 64 fit into a run"},
    };
    for (const auto& [texts, why] : rows) {
        const std::string told = failureOf<UnknownParameter>(
            [&texts = texts] { eventsNamed(texts, twoOwn(), UnitSystem::metric); });
        EXPECT_NE(told.find(why), std::string::npos) << told;
    }
}

} // namespace
} // namespace zint
