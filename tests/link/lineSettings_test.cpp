#include "link/commError.h"
#include "link/lineSettings.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

TEST(LineSettingsTest, ReadsASpeedAndRefusesAllElse)
{
    EXPECT_EQ(LineSettings::parse("38400,N,8,1").bitsPerSecond, 38400);
    for (const std::string text : {"", "9600", ",N,8,1", "9600,E,8,1", "9600,n,8,1", "fast,N,8,1", "0,N,8,1",
                                   "-9600,N,8,1", "99999999999,N,8,1", "9600,N,8,1 "}) {
        try {
            LineSettings::parse(text);
            ADD_FAILURE() << "taken: " << text;
        } catch (const CommError& error) {
            EXPECT_EQ(error.number(), 22);
            EXPECT_EQ(error.what(), "The line settings \"" + text + "\" are not understood");
        }
    }
}

} // namespace
} // namespace zint
