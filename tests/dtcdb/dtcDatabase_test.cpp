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
const DtcRecord addedRecord{"P0300", "Misfire", ""};

struct DtcDatabaseTest : testing::Test {
    TemporaryFolder folder;
    std::string path = folder.path("Fehlercodes für Ärger ☂.mdb");

    /// @return its bytes
    std::string makeDatabase(const std::string& sql) const
    {
        std::filesystem::remove(utf8Path(path));
        SQLite::Database(path, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec(sql);
        return contents(path);
    }

    static void expectFailure(const std::string& why, const std::function<void()>& call)
    {
        const std::string told = failureOf<DatabaseError>(call);
        EXPECT_NE(told.find(why), std::string::npos) << told;
    }
};

TEST_F(DtcDatabaseTest, FindsDescriptionsInTheDatabaseOrInTheShippedText)
{
    const DtcDescriptionSource source(path, folder.path("dtc.txt"));
    EXPECT_FALSE(source.available() || DtcDescriptionSource(folder.path(), "").available());
    expectFailure("the file is missing", [&] { source.open(); });
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
    const auto look = [this] { DtcDatabase::openForReading(path); };
    expectFailure("the file is missing or you may not read it.", look);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path())) << "looking for a file does not make it";
    const std::pair<std::string, const char*> rows[] = {
        {"", "read: the file is empty. Set Up Code Descriptions in the launcher fills it"},
        {"\0\1\0\0Standard Jet DB\0"s, "this is a database of the Access engine. Open it in the DTC Editor"},
        {"P0133,slow response,\r\n", "the file is no database of this program. Choose another file."},
        {"SQLite format 3\0"s, "the file is damaged (file is not a database). Restore it from a copy."},
        {makeDatabase("CREATE TABLE Customers (Code TEXT, Description TEXT);"), "it has no table \"DTCset\""},
        {makeDatabase("CREATE TABLE DTCset (Code TEXT, Words TEXT);"), "no such column: Description."}};
    for (const auto& [bytes, why] : rows) {
        TemporaryFolder::write(path, bytes);
        expectFailure(why, look);
    }
}

TEST_F(DtcDatabaseTest, EditsOnlyWhereTheIndexTellsRecordsApart)
{
    const char* const rows[] = {"INDEX DTCndx ON DTCset (Code COLLATE NOCASE)",
                                "UNIQUE INDEX DTCndx ON DTCset (Code)",
                                "UNIQUE INDEX DTCndx ON DTCset (Notes COLLATE NOCASE)",
                                "UNIQUE INDEX DTCndx ON DTCset (Code COLLATE NOCASE) WHERE Notes > ''"};
    for (const std::string index : rows) {
        makeDatabase(table + "CREATE " + index);
        expectFailure("it has no index \"DTCndx\"", [this] { DtcDatabase::open(path); });
        EXPECT_NO_THROW(DtcDatabase::openForReading(path));
    }
    makeDatabase(table + "CREATE UNIQUE INDEX dtcNDX ON DTCset (CODE COLLATE NOCASE)");
    EXPECT_NO_THROW(DtcDatabase::open(path));
}

TEST_F(DtcDatabaseTest, UndoesWhatAProgramLeftThatWasKilled)
{
    makeDatabase(layout + "INSERT INTO DTCset VALUES ('P0300', 'before', '')");
    const std::string left = folder.path("left.mdb");
    {
        SQLite::Database killed(path, SQLite::OPEN_READWRITE);
        killed.exec("PRAGMA cache_size = 1; BEGIN; UPDATE DTCset SET Description = hex(zeroblob(99999))");
        std::filesystem::copy_file(utf8Path(path), left);
        std::filesystem::copy_file(utf8Path(path + "-journal"), left + "-journal");
    }
    ASSERT_NE(contents(left).find("000000"), std::string::npos);
    EXPECT_EQ(DtcDatabase::openForReading(left)->describe("P0300"), "before");
    EXPECT_FALSE(fileExists(left + "-journal"));
}

TEST_F(DtcDatabaseTest, ANewDatabaseGetsItsNameWhenItIsWhole)
{
    [[maybe_unused]] const auto fill = [this](DtcDatabase& database) {
        EXPECT_FALSE(isSetUp(path)) << "a kill would leave it";
        database.add(addedRecord);
    };
    const auto fail = [](DtcDatabase&) { throw std::runtime_error("no"); };
    EXPECT_THROW(DtcDatabase::create(path, fail), std::runtime_error);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
    const auto somebodys = [this](DtcDatabase&) { TemporaryFolder::write(path, "somebody's"); };
    EXPECT_THROW(DtcDatabase::create(path, somebodys), DatabaseError);
    EXPECT_EQ(contents(path), "somebody's");
    std::filesystem::remove(utf8Path(path));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
#ifdef __unix__
    TemporaryFolder::write(path, "");
    std::filesystem::create_symlink(utf8Path(path), folder.path("link"));
    DtcDatabase::create(folder.path("link"), fill);
    EXPECT_EQ(DtcDatabase::open(path)->count(), 1) << "the file behind the link";
#endif
}

TEST_F(DtcDatabaseTest, AStepIsTakenAsAWholeAndKeepsOthersOut)
{
    makeDatabase(layout);
    SQLite::Database other(path, SQLite::OPEN_READWRITE);
    other.exec("BEGIN EXCLUSIVE");
    std::thread ends([&other] {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        other.exec("ROLLBACK");
    });
    const auto database = DtcDatabase::open(path, std::chrono::seconds(20)); // waits
    ends.join();
    const auto addAndFail = [&] {
        EXPECT_THROW(other.exec("BEGIN IMMEDIATE"), SQLite::Exception);
        database->add(addedRecord);
        EXPECT_EQ(database->count(), 1);
        throw std::runtime_error("no");
    };
    EXPECT_THROW(database->inOneStep(addAndFail), std::runtime_error);
    EXPECT_EQ(database->count(), 0);
#ifdef __unix__ // elsewhere nobody can move a file that is open
    std::filesystem::rename(utf8Path(path), utf8Path(folder.path("moved")));
    expectFailure("written: the file was moved or deleted. Close it and open it",
                  [&] { database->add(addedRecord); });
#endif
}

} // namespace
} // namespace zint
