#include "dtcdb/dtcDatabase.h"
#include "endToEnd/simulator.h"
#include "endToEnd/zintObd.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zint {
namespace {

struct DtcCommandEndToEnd : testing::Test {
    TemporaryFolder folder;
    std::string database = folder.path("Fehlercodes für Ärger.mdb");
    std::string text = folder.path("text");

    /// @param file follows the words of the command; empty: none
    Outcome dtc(const char* command, const std::string& file = {}) const
    {
        QStringList arguments{QStringLiteral("dtc")};
        arguments += words(command);
        if (!file.empty())
            arguments << QString::fromStdString(file);
        return runZint(arguments << QStringLiteral("--db") << QString::fromStdString(database));
    }

    Outcome import(const char* lines, const char* options = "") const
    {
        folder.write(text, lines);
        return dtc((std::string("import ") + options).c_str(), text);
    }
};

void expectRun(const Outcome& run, int status, const std::string& output, const std::string& errors = {})
{
    EXPECT_EQ(run.status, status);
    EXPECT_EQ(run.output, output);
    EXPECT_EQ(run.errors, errors);
}

TEST_F(DtcCommandEndToEnd, SetsUpOnceAndLooksUp)
{
    const std::string inAll = contents(ZINT_DATA_FOLDER "/dtc.txt");
    const std::string count = std::to_string(std::ranges::count(inAll, '\n'));
    expectRun(dtc("setup"), 0, count + " code descriptions set up in " + database + "\n");
    const std::string bytes = contents(database);
    expectRun(dtc("setup"), 1, "",
              "zint-obd: \"" + database + "\" exists already; nothing has been changed\n");
    expectRun(dtc("setup --if-missing"), 0, "");
    EXPECT_EQ(contents(database), bytes);

    const Outcome known = dtc("lookup p0301 U0100");
    EXPECT_EQ(known.status, 0) << known.errors;
    EXPECT_TRUE(known.output.starts_with("P0301 Cylinder 1 ")) << known.output;
    EXPECT_NE(known.output.find("\nU0100 "), std::string::npos) << known.output;
}

TEST_F(DtcCommandEndToEnd, WorksOnTheDatabaseThatTheWindowsUse)
{
    ZintObd program(words("dtc setup"));
    const std::string path = program.home().path("dtc.mdb");
    const Outcome run = program.wait();
    EXPECT_TRUE(run.status == 0 && run.output.ends_with(" set up in " + path + "\n")) << run.errors;
    EXPECT_NE(DtcDatabaseSource(path).open()->describe("P0133"), std::nullopt);
}

TEST_F(DtcCommandEndToEnd, ImportsLooksUpAndExports)
{
    DtcDatabase::create(database);
    expectRun(import("P0133,Sensor,Bank 1\nx0301,no\nP0301,Misfire\n"), 0,
              "2 DTC('s) add, 1 skip, 0dup, 3 total\n", "zint-obd: Line 2: \"x0301\" is no code\n");
    expectRun(import("P0133\tOther\nU3FFF\tNew\n", "--tab --overwrite --no-notes"), 0,
              "1 DTC('s) add, 0 skip, 1upd, 2 total\n");
    expectRun(dtc("lookup P0133 P0302 PO301 p0301"), 1, "P0133 Other\n  Bank 1\nP0301 Misfire\n",
              "zint-obd: P0302 has no description\nzint-obd: PO301 is no trouble code\n");

    expectRun(dtc("export --delim-notes", text), 0, "3 DTC('s) exported\n");
    EXPECT_EQ(contents(text), "P0133,Other,Bank 1\r\nP0301,Misfire, \r\nU3FFF,New, \r\n");
    expectRun(dtc("export - --space --no-notes"), 0, "P0133 Other\nP0301 Misfire\nU3FFF New\n");
}

TEST_F(DtcCommandEndToEnd, FailuresSayWhyAndChangeNothing)
{
    const std::string missing =
        "there is no database of code descriptions \"" + database + "\"; zint-obd dtc setup makes one";
    folder.write(text, "P0133,Sensor\n");
    for (const char* command : {"lookup P0301", "import", "export"})
        expectFailure(dtc(command, std::string_view(command).ends_with('t') ? text : std::string()),
                      missing.c_str());
    EXPECT_FALSE(fileExists(database));
    EXPECT_EQ(contents(text), "P0133,Sensor\n");

    folder.write(database, "no database");
    const Outcome used = dtc("lookup P0301");
    expectFailure(used, "the file is no database of this program");
    EXPECT_EQ(std::ranges::count(used.errors, '\n'), 1) << used.errors;
    database = folder.path("b.mdb");
    DtcDatabase::create(database);
    const std::string bytes = contents(database);
    expectFailure(dtc("import", folder.path("none")), "none");
    expectFailure(dtc("export", database), "is the database; give the text file another name");
    expectFailure(dtc("export", folder.path("no folder/a.txt")), "no folder");
    EXPECT_EQ(contents(database), bytes);
    database = folder.path("no folder/c.mdb");
    expectFailure(dtc("setup"), "can't be made");
}

TEST_F(DtcCommandEndToEnd, TheReportOfCodesTellsOnceHowToComeByDescriptions)
{
    ZintObd program(words("codes --simulate"));
    const std::string path = program.home().path("dtc.mdb");
    const Outcome without = program.wait();
    EXPECT_EQ(without.status, 0);
    EXPECT_EQ(without.errors, "zint-obd: there is no database of code descriptions \"" + path +
                                  "\"; zint-obd dtc setup makes one\n");
}

} // namespace
} // namespace zint
