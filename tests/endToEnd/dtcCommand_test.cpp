#include "dtcdb/dtcDatabase.h"
#include "endToEnd/programs.h"

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
        return runZint(words("dtc") + words(command) + QStringList{toQt(file), u"--db"_qs, toQt(database)});
    }
};

TEST_F(DtcCommandEndToEnd, SetsUpOnceAndLooksUp)
{
    EXPECT_EQ(runZint(words("dtc lookup p0301 P1301")).all(), // in the shipped text
              "1|P0301 Cylinder 1 misfire detected\n|"
              "zint-obd: P1301 is the maker's own code and has no description\n");
    const std::string inAll = contents(ZINT_DATA_FOLDER "/dtc.txt");
    const std::string count = std::to_string(std::ranges::count(inAll, '\n'));
    ZintObd program(words("dtc setup"));
    const std::string own = program.home().path("dtc.mdb");
    EXPECT_EQ(program.wait().all(), "0|" + count + " code descriptions set up in " + own + "\n|");
    EXPECT_EQ(runZint(words("dtc setup --db " + own)).all(),
              "1||zint-obd: \"" + own + "\" exists already; nothing has been changed\n");
    const QStringList setup = words("dtc setup --if-missing --db " + own);
    EXPECT_EQ(runZint(setup).all(), "0||");
    TemporaryFolder::write(own, "half a database");
    expectFailure(runZint(setup), "the file is no database of this program");
    TemporaryFolder::write(own, ""); // as a set-up that was killed may have left it
    EXPECT_TRUE(runZint(setup).output.starts_with(count));
}

TEST_F(DtcCommandEndToEnd, ImportsLooksUpAndExports)
{
    TemporaryFolder::write(text, "Code;Text\nP0133;\"Other; \";Bank 1\nx0301;no\nU3FFF;New;\"a, b\"\n");
    for (const char* command : {"lookup", "import", "export"}) // of which the first takes the path for a code
        expectFailure(dtc(command, text), "there is no database of code descriptions \"" + database +
                                              "\"; zint-obd dtc setup makes one");
    EXPECT_FALSE(fileExists(database));
    DtcDatabase::create(database);
    EXPECT_EQ(dtc("import --csv --overwrite", text).all(), "0|2 DTC('s) add, 1 skip, 0upd, 3 total\n|"
                                                           "zint-obd: Line 3: \"x0301\" is no code\n");
    EXPECT_EQ(dtc("lookup P0133 P0302 PO301", "u3fff").all(),
              "1|P0133 Other; \n  Bank 1\nU3FFF New\n  a, b\n|"
              "zint-obd: P0302 has no description\nzint-obd: PO301 is no trouble code\n");
    EXPECT_EQ(dtc("export --tab --delim-notes", text).all(), "0|2 DTC('s) exported\n|");
    EXPECT_EQ(contents(text), "P0133\tOther; \tBank 1\r\nU3FFF\tNew\ta, b\r\n");
    EXPECT_EQ(dtc("export --tab --no-notes", "-").all(), "0|P0133\tOther; \nU3FFF\tNew\n|");
    EXPECT_NE(dtc("export", "-").errors.find("2 record(s) will not read back"), std::string::npos);
    expectFailure(dtc("export", database), "is the database; give the text file another name");
}

} // namespace
} // namespace zint
