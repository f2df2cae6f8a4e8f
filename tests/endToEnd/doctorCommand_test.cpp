#include "endToEnd/programs.h"

namespace zint {
namespace {

TEST(DoctorCommandEndToEnd, FindsTheSpeedOfARealLineAndSaysHowWellItWorks)
{
    const Simulator simulator("--protocol can --units 2 --line-speed 38400 --mind-speed --reset-time 0");
    const Outcome wrong = runZint(words("doctor --quick --speed 9600 --port " + simulator.path()));
    EXPECT_EQ(wrong.status, 1);
    EXPECT_NE(wrong.output.find("\nThe adapter answers at 38400 bits per second"), std::string::npos)
        << wrong.all();
    const Outcome right = runZint(words("doctor --json --speed 38400 --port " + simulator.path()));
    EXPECT_EQ(right.status, 0) << right.all();
    EXPECT_NE(right.output.find("\"works\": true"), std::string::npos) << right.all();
    EXPECT_NE(right.output.find("requests a second, ISO 15765-4, 2 control units."), std::string::npos);
    EXPECT_EQ(runZint(words("codes --speed 38400 --port " + simulator.path())).status, 0)
        << "it is left in order";
}

} // namespace
} // namespace zint
