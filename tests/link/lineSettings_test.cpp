#include "link/commError.h"
#include "link/connectionChoice.h"
#include "link/lineSettings.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

TEST(LineSettingsTest, ReadsWhatAToolSets)
{
    EXPECT_EQ(LineSettings::parse(ConnectionChoice{.speed = "9600"}.lineSettings()).bitsPerSecond, 9600);
    EXPECT_EQ(LineSettings::parse(ConnectionChoice{.speed = "38400"}.lineSettings()).bitsPerSecond, 38400);
}

TEST(LineSettingsTest, RefusesWhatAPortCannotTake)
{
    for (const std::string_view text :
         {"", "9600", ",N,8,1", "9600,E,8,1", "9600,N,8,2", "9600,n,8,1", "fast,N,8,1", "0,N,8,1",
          "-9600,N,8,1", "99999999999,N,8,1", "9600,N,8,1 "}) {
        try {
            LineSettings::parse(text);
            ADD_FAILURE() << "taken: \"" << text << '"';
        } catch (const CommError& error) {
            EXPECT_EQ(error.number(), 22);
            EXPECT_NE(std::string_view(error.what()).find(text), std::string_view::npos);
        }
    }
}

} // namespace
} // namespace zint
