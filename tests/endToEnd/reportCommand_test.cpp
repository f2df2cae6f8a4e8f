#include "endToEnd/programs.h"

namespace zint {
namespace {

TEST(ReportCommandEndToEnd, ReadsAVehicleComparesAndTellsOfConcerns)
{
    const TemporaryFolder folder;
    const Simulator simulator("--protocol can --units 2 --padding 85");
    const Outcome text = runZint(simulator.with("report --quick --html " + folder.path("page.html")));
    EXPECT_EQ(text.status, 0) << text.errors;
    EXPECT_NE(text.output.find("\n  P0133  stored, permanent  7E8 "), std::string::npos) << text.output;
    EXPECT_TRUE(contents(folder.path("page.html")).starts_with("<!DOCTYPE html>"));
    const Outcome json = runZint(simulator.with("report --json"));
    TemporaryFolder::write(folder.path("before.json"), json.output);
    runZint(simulator.with("codes --clear --yes"));
    const Outcome after =
        runZint(simulator.with("report --quick --fail-on readiness --compare " + folder.path("before.json")));
    EXPECT_EQ(after.status, 3) << after.errors;
    EXPECT_NE(after.output.find("\n  gone: P0741 (stored, 7E9)\n"), std::string::npos) << after.output;
    TemporaryFolder::write(folder.path("mail.txt"), "# protocol 6\n> 03\n7E9 02 43 00\n");
    const Outcome compared = runZint(words("report --json --replay " + folder.path("mail.txt") +
                                           " --compare " + folder.path("before.json")));
    const auto gone = compared.output.find("\"comparison\": {\n    \"gone\": [");
    EXPECT_NE(compared.output.find("\"code\": \"P0741\"", gone), std::string::npos) << compared.all();
}

TEST(ReportCommandEndToEnd, DecodesATranscriptAndSaysWhyNothingIsRead)
{
    const TemporaryFolder folder;
    TemporaryFolder::write(folder.path("mail.txt"), "# protocol 6\n> 03\n7E8 04 43 01 01 33\n");
    const Outcome replay = runZint(words("report --json --fail-on codes --replay " + folder.path("mail.txt") +
                                         " --html " + folder.path("page.html")));
    EXPECT_EQ(replay.status, 3);
    EXPECT_NE(replay.output.find("\"exchanges\""), std::string::npos) << replay.all();
    EXPECT_NE(contents(folder.path("page.html")).find("P0133"), std::string::npos);
    TemporaryFolder::write(folder.path("mail.txt"), "# protocol 6\n> 03\n7E8 10 08 43 03 01 33 03 01\n");
    expectFailure(runZint(words("report --fail-on codes --replay " + folder.path("mail.txt"))),
                  "not all control units have told");
    TemporaryFolder::write(folder.path("mail.txt"), "no transcript");
    expectFailure(runZint(words("report --replay " + folder.path("mail.txt"))), "is no transcript");
    VehicleRun off("--ignition-off", "report");
    expectFailure(off.program.wait(), "ignition on?");
    VehicleRun gone("--disconnect-after 15", "report");
    const Outcome part = gone.program.wait();
    expectFailure(part, "com1 - adapter disconnected");
    EXPECT_TRUE(part.output.starts_with("Vehicle report\n")) << "what was read is printed";
}

} // namespace
} // namespace zint
