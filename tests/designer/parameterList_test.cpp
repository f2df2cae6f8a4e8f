#include "catalogue/chooser.h"
#include "catalogue/pidCatalogue.h"
#include "parameters/standardParameters.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zint {
namespace {

TEST(StandardParametersTest, AllFieldsHaveARequestAConversionAndAFrequencyOfTheChooser)
{
    for (const StandardParameter& parameter : standardParameters()) {
        const auto isOffered = [&](std::string_view choice) {
            return chooserNumber(choice) == parameter.frequency;
        };
        EXPECT_TRUE(std::ranges::any_of(PollChoices, isOffered)) << parameter.code;
        const DesignEntry event = eventFor(parameter, UnitSystem::imperial);
        EXPECT_EQ(standardConversion(event.conversion), parameter.conversion(UnitSystem::imperial));
        EXPECT_EQ(requestedParameter(event.code), parameter.pid);
        EXPECT_LT(parameter.minimum(UnitSystem::imperial), parameter.maximum(UnitSystem::imperial));
    }
    for (const char* other : {"", "01", "0", "0105zz", "010C0D", "0205", "ATRV"})
        EXPECT_FALSE(requestedParameter(other)) << other;
}

TEST(StandardParametersTest, AreFoundByWordsAndPolledAsFits)
{
    const auto found = [](std::string_view words) {
        std::string list;
        for (const StandardParameter& parameter : standardParameters()) {
            if (isFound(parameter, words, UnitSystem::imperial)) {
                const DesignEntry event = eventFor(parameter, UnitSystem::metric);
                list += event.code + " " + event.description + " " + std::to_string(event.conversion) + " " +
                        std::to_string(event.frequency) + "; ";
            }
        }
        return list;
    };
    EXPECT_EQ(found("0c"), "010C Engine speed 1120 1; ");
    EXPECT_EQ(found("  COOLANT 010 "), "0105 Coolant temperature 1050 15; ");
    EXPECT_EQ(found("oil °f"), "015C Engine oil temperature 1920 15; ") << "in the units that are shown";
    EXPECT_EQ(found("oil °c"), "");
    EXPECT_EQ(found("gear diesel"), "");
    EXPECT_EQ(found("fuel, level"), "012F Fuel level 1470 90; ");
    EXPECT_EQ(found("0151"), "0151 Fuel in use 1810 900; ");
    EXPECT_EQ(found("rail 6D B"),
              "016D Commanded fuel rail pressure B 2093 2; 016D Fuel rail pressure B 2094 2; "
              "016D Fuel rail temperature B 2095 15; ");
    EXPECT_GT(std::ranges::count(found(""), ';'), 200);
}

} // namespace
} // namespace zint
