#include "dtcdb/dtcDatabase.h"
#include "endToEnd/simulator.h"
#include "endToEnd/zintObd.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace zint {
namespace {

struct DtcCommandEndToEnd : testing::Test {
    TemporaryFolder folder;
    std::string database = folder.path("Fehlercodes für Ärger.mdb");
    std::string text = folder.path("text");

    /// @param file follows the words of the command
    Outcome dtc(const char* command, const std::string& file) const
    {
        return runZint(words("dtc") + words(command) + Arguments{file, "--db", database});
    }
    Outcome dtc(const char* command) const
    {
        return runZint(words("dtc") + words(command) + Arguments{"--db", database});
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
    expectRun(runZint(words("dtc lookup p0301 P1301")), 1, "P0301 Cylinder 1 misfire detected\n",
              "zint-obd: P1301 is the maker's own code and has no description\n"); // in the shipped text
    const std::string inAll = contents(ZINT_DATA_FOLDER "/dtc.txt");
    const std::string count = std::to_string(std::ranges::count(inAll, '\n'));
    ZintObd program(words("dtc setup"));
    expectRun(program.wait(), 0,
              count + " code descriptions set up in " + program.home().path("dtc.mdb") + "\n");
    TemporaryFolder::write(database, ""); // as a set-up that was killed may have left it
    expectRun(dtc("setup --if-missing"), 0, count + " code descriptions set up in " + database + "\n");
    expectRun(dtc("setup"), 1, "",
              "zint-obd: \"" + database + "\" exists already; nothing has been changed\n");
    expectRun(dtc("setup --if-missing"), 0, "");
    TemporaryFolder::write(database, "half a database");
    expectFailure(dtc("setup --if-missing"), "the file is no database of this program");
}

TEST_F(DtcCommandEndToEnd, ImportsLooksUpAndExports)
{
    DtcDatabase::create(database);
    TemporaryFolder::write(text, "Code;Text\nP0133;\"Other; \";Bank 1\nx0301;no\nU3FFF;New;\"a, b\"\n");
    expectRun(dtc("import --csv --overwrite", text), 0, "2 DTC('s) add, 1 skip, 0upd, 3 total\n",
              "zint-obd: Line 3: \"x0301\" is no code\n");
    expectRun(dtc("lookup P0133 P0302 PO301 u3fff"), 1, "P0133 Other; \n  Bank 1\nU3FFF New\n  a, b\n",
              "zint-obd: P0302 has no description\nzint-obd: PO301 is no trouble code\n");
    expectRun(dtc("export --tab --delim-notes", text), 0, "2 DTC('s) exported\n");
    EXPECT_EQ(contents(text), "P0133\tOther; \tBank 1\r\nU3FFF\tNew\ta, b\r\n");
    expectRun(dtc("export - --csv --no-notes"), 0, "Code,Description\nP0133,\"Other; \"\nU3FFF,New\n");
    EXPECT_NE(dtc("export -").errors.find("2 record(s) will not read back"), std::string::npos);
}

TEST_F(DtcCommandEndToEnd, FailuresSayWhyAndChangeNothing)
{
    TemporaryFolder::write(text, "P0133,Sensor\n");
    for (const Outcome& run : {dtc("lookup P0301"), dtc("import", text), dtc("export", text)})
        expectFailure(run, "there is no database of code descriptions \"" + database +
                               "\"; zint-obd dtc setup makes one");
    EXPECT_FALSE(fileExists(database));
    EXPECT_EQ(contents(text), "P0133,Sensor\n");
    DtcDatabase::create(database);
    const std::string bytes = contents(database);
    expectFailure(dtc("export", database), "is the database; give the text file another name");
    SQLite::Database other(database, SQLite::OPEN_READWRITE);
    other.exec("BEGIN EXCLUSIVE");
    expectFailure(dtc("import", text), "another program is writing to it");
    EXPECT_EQ(contents(database), bytes);
}

} // namespace
} // namespace zint
