#include "dtcdb/databaseKind.h"
#include "dtcdb/descriptionSource.h"
#include "support/failure.h"
#include "support/temporaryFolder.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>

#include <thread>

namespace zint {
namespace {

using namespace std::string_literals;

const std::string table = "CREATE TABLE DTCset (Code TEXT, Description TEXT, Notes TEXT);";
const std::string layout = table + "CREATE UNIQUE INDEX DTCndx ON DTCset (Code COLLATE NOCASE);";
const std::string manyRecords =
    "PRAGMA page_size = 512;" + layout +
    "WITH RECURSIVE n(i) AS (SELECT 100 UNION ALL SELECT i + 1 FROM n WHERE i < 299)"
    "INSERT INTO DTCset SELECT 'P0' || i, 'before', '' FROM n;";

const DtcRecord record{"P0301", "Cylinder 1", ""};

struct DtcDatabaseTest : testing::Test {
    TemporaryFolder folder;
    std::string path = folder.path("Fehlercodes für Ärger ☂.mdb");

    void makeDatabase(const std::string& sql) const
    {
        SQLite::Database(path, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec(sql);
    }

    static void expectFailure(const std::function<void()>& call, const std::string& why)
    {
        const std::string told = failureOf<DatabaseError>(call);
        EXPECT_NE(told.find(why), std::string::npos) << told;
    }

    void expectRefusal(const std::string& why) const
    {
        expectFailure([this] { DtcDatabase::openForReading(path)->describe("P0299"); }, why);
    }

    std::ptrdiff_t files() const
    {
        return std::distance(std::filesystem::directory_iterator(folder.path()), {});
    }
};

TEST_F(DtcDatabaseTest, FindsDescriptionsInTheDatabaseOrInTheShippedText)
{
    const DtcDescriptionSource source(path, folder.path("dtc.txt"));
    EXPECT_FALSE(source.available());
    EXPECT_FALSE(DtcDescriptionSource(folder.path(), "").available()) << "a folder";
    EXPECT_THROW(source.open(), DatabaseError);
    TemporaryFolder::write(folder.path("dtc.txt"), "P0133,as shipped,\n");
    TemporaryFolder::write(path, ""); // which a set-up that was killed may have left
    EXPECT_TRUE(source.available());
    EXPECT_EQ(source.open()->describe("p0133"), "as shipped");
    EXPECT_EQ(contents(path), "") << "it stays in memory";

    makeDatabase(layout + "INSERT INTO DTCset VALUES ('P0133', 'O2 sensor – slow response', 'n'),"
                          "('u0123', 'Lost communication', ''), ('P0420', NULL, NULL);");
    const auto database = source.open();
    EXPECT_EQ(database->describe("U0123"), "Lost communication") << "without regard to case";
    EXPECT_EQ(database->describe("P0420"), "");
    for (const std::string_view odd : {"P0301", "", "P013", "P0133 ", "P01%", "P0\r\r>", "' OR 1=1 --"})
        EXPECT_EQ(database->describe(odd), std::nullopt) << odd;
    EXPECT_EQ(database->describe("P0133"), "O2 sensor – slow response");
}

TEST_F(DtcDatabaseTest, SaysWhyAFileIsNoDatabaseOfThisProgram)
{
    const std::pair<std::string, const char*> rows[] = {
        {"", "the file is empty. Set Up Code Descriptions in the launcher fills it"},
        {"\0\1\0\0Standard Jet DB\0"s, "this is a database of the Access engine. Open it in the DTC Editor"},
        {"\0\1\0\0Standard ACE DB\0"s, "this is a database of the Access engine"},
        {"P0133,slow response,\r\n", "the file is no database of this program. Choose another file."},
        {"SQLite format 3\0"s, "the file is damaged (file is not a database). Restore it from a copy."},
    };
    expectRefusal("the file is missing or you may not read it.");
    EXPECT_FALSE(fileExists(path)) << "looking for a file does not make it";
    for (const auto& [bytes, reason] : rows) {
        TemporaryFolder::write(path, bytes);
        expectRefusal("\"" + path + "\" can't be read: " + reason);
    }
    path = folder.path("another program's");
    makeDatabase("CREATE TABLE Customers (Code TEXT, Description TEXT);");
    expectRefusal("it has no table \"DTCset\"");
    makeDatabase("CREATE TABLE DTCset (Code TEXT, Words TEXT);");
    expectRefusal("no such column: Description.");
    std::filesystem::remove(utf8Path(path));
    makeDatabase(layout);
    std::string bytes = contents(path);
    bytes[18] = '\3'; // the version that is needed to write
    TemporaryFolder::write(path, bytes);
    expectFailure([this] { DtcDatabase::open(path)->add(record); }, "written: you may only read the file");
}

TEST_F(DtcDatabaseTest, EditsOnlyWhereTheIndexTellsRecordsApart)
{
    const std::pair<const char*, bool> rows[] = {
        {"", false},
        {"CREATE INDEX DTCndx ON DTCset (Code COLLATE NOCASE)", false},
        {"CREATE UNIQUE INDEX DTCndx ON DTCset (Code)", false},
        {"CREATE UNIQUE INDEX DTCndx ON DTCset (Notes COLLATE NOCASE)", false},
        {"CREATE UNIQUE INDEX DTCndx ON DTCset (Code COLLATE NOCASE, Notes)", false},
        {"CREATE UNIQUE INDEX DTCndx ON DTCset (Code COLLATE NOCASE) WHERE Notes > ''", false},
        {"CREATE UNIQUE INDEX dtcNDX ON DTCset (CODE COLLATE NOCASE)", true},
    };
    for (const auto& [index, isSound] : rows) {
        std::filesystem::remove(utf8Path(path));
        makeDatabase(table + index);
        expectFailure([this] { DtcDatabase::open(path); },
                      isSound ? "no failure" : "it has no index \"DTCndx\"");
        expectRefusal("no failure"); // it can be read
    }
}

TEST_F(DtcDatabaseTest, UndoesWhatAProgramLeftThatWasKilled)
{
    makeDatabase(manyRecords);
    const std::string left = folder.path("left.mdb");
    {
        SQLite::Database killed(path, SQLite::OPEN_READWRITE);
        killed.exec("PRAGMA cache_size = 1; BEGIN; UPDATE DTCset SET Description = 'half an import'");
        TemporaryFolder::write(left, contents(path));
        TemporaryFolder::write(left + "-journal", contents(path + "-journal"));
    }
    ASSERT_NE(contents(left).find("half an import"), std::string::npos);
    EXPECT_EQ(DtcDatabase::openForReading(left)->describe("P0299"), "before");
    EXPECT_FALSE(fileExists(left + "-journal"));
}

TEST_F(DtcDatabaseTest, ANewDatabaseGetsItsNameWhenItIsWhole)
{
    const auto fill = [this](DtcDatabase& database) {
        EXPECT_FALSE(isSetUp(path)) << "a kill would leave it";
        database.add({"P0300", "Misfire", ""});
    };
    const auto fail = [&](DtcDatabase& database) {
        fill(database);
        throw std::runtime_error("no");
    };
    EXPECT_THROW(DtcDatabase::create(path, fail), std::runtime_error);
    EXPECT_EQ(files(), 0);
    const auto somebodys = [this](DtcDatabase&) { TemporaryFolder::write(path, "somebody's"); };
    EXPECT_THROW(DtcDatabase::create(path, somebodys), DatabaseError);
    EXPECT_EQ(contents(path), "somebody's");
    TemporaryFolder::write(path, "");
    std::filesystem::create_symlink(utf8Path(path), folder.path("link"));
    const auto made = DtcDatabase::create(folder.path("link"), fill);
    EXPECT_EQ(DtcDatabase::open(path)->count(), 1) << "the file behind the link";
    std::filesystem::remove(folder.path("link"));
    EXPECT_EQ(files(), 1);
    const auto removeAndFail = [&] {
        made->remove(*made->first());
        EXPECT_EQ(made->count(), 0);
        throw std::runtime_error("no");
    };
    EXPECT_THROW(made->inOneStep(removeAndFail), std::runtime_error);
    EXPECT_EQ(made->count(), 1);
    std::filesystem::rename(utf8Path(path), utf8Path(folder.path("moved")));
    expectFailure([&] { made->add(record); }, "written: the file was moved or deleted. Close it and open it");
}

TEST_F(DtcDatabaseTest, WaitsForAnotherProgramAndOneStepKeepsOthersOut)
{
    makeDatabase(layout);
    SQLite::Database other(path, SQLite::OPEN_READWRITE);
    other.exec("BEGIN EXCLUSIVE");
    std::thread ends([&other] {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        other.exec("ROLLBACK");
    });
    const auto database = DtcDatabase::open(path, std::chrono::seconds(20));
    ends.join();
    database->inOneStep([&] { EXPECT_THROW(other.exec("BEGIN IMMEDIATE"), SQLite::Exception); });
}

} // namespace
} // namespace zint
