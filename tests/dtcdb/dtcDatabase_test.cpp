#include "dtcdb/dtcDatabase.h"
#include "support/temporaryFolder.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <random>

namespace zint {
namespace {

constexpr const char* layout = "CREATE TABLE DTCset (Code TEXT, Description TEXT, Notes TEXT);"
                               "CREATE UNIQUE INDEX DTCndx ON DTCset (Code COLLATE NOCASE);";

struct DtcDatabaseTest : testing::Test {
    TemporaryFolder folder;
    std::string path = folder.path("dtc.mdb");

    void makeDatabase(const std::string& sql) const
    {
        SQLite::Database(path, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec(sql);
    }

    std::string bytes() const
    {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::optional<std::string> describe(std::string_view code) const
    {
        return DtcDatabase::openForReading(path)->describe(code);
    }

    /// Why the file is refused; empty when it is not.
    std::string refusal() const
    {
        try {
            describe("P0133");
        } catch (const DatabaseError& error) {
            EXPECT_NE(std::string(error.what()).find("\"" + path + "\""), std::string::npos) << error.what();
            return error.what();
        }
        return {};
    }
};

TEST_F(DtcDatabaseTest, FindsDescriptions)
{
    makeDatabase(std::string(layout) +
                 "INSERT INTO DTCset VALUES ('P0133', 'O2 sensor – slow response', 'n'),"
                 "('u0123', 'Lost communication', ''), ('P0420', NULL, NULL),"
                 "('P0421', '', '');");
    const auto database = DtcDatabase::openForReading(path);
    EXPECT_EQ(database->describe("P0133"), "O2 sensor – slow response");
    EXPECT_EQ(database->describe("U0123"), "Lost communication") << "without regard to case";
    EXPECT_EQ(database->describe("P0420"), "");
    EXPECT_EQ(database->describe("P0421"), "");
    EXPECT_EQ(database->describe("P0301"), std::nullopt);
    for (const std::string_view odd : {"", "P013", "P0133 ", "P01%", "P0\r\r>", "' OR 1=1 --"})
        EXPECT_EQ(database->describe(odd), std::nullopt) << odd;
    EXPECT_EQ(database->describe("P0133"), "O2 sensor – slow response")
        << "after a look-up that found nothing";
}

TEST_F(DtcDatabaseTest, OpensAFileWhoseNameIsNotAscii)
{
    path = folder.path("Fehlercodes für Ärger ☂.mdb");
    makeDatabase(std::string(layout) + "INSERT INTO DTCset VALUES ('P0133', 'slow', '');");
    EXPECT_EQ(describe("P0133"), "slow");
}

TEST_F(DtcDatabaseTest, TellsFromTheSourceWhetherThereIsAFile)
{
    EXPECT_FALSE(DtcDatabaseSource(path).available());
    EXPECT_FALSE(DtcDatabaseSource("").available());
    EXPECT_FALSE(DtcDatabaseSource(folder.path()).available()) << "a folder";
    makeDatabase(std::string(layout) + "INSERT INTO DTCset VALUES ('P0133', 'slow', '');");
    EXPECT_TRUE(DtcDatabaseSource(path).available());
    EXPECT_EQ(DtcDatabaseSource(path).open()->describe("P0133"), "slow");
}

TEST_F(DtcDatabaseTest, SaysWhyAFileIsNoDatabaseOfThisProgram)
{
    const std::string jetHead("\0\1\0\0Standard Jet DB\0\1\0\0\0", 24);
    const std::string aceHead("\0\1\0\0Standard ACE DB\0\2\0\0\0", 24);
    const struct {
        const char* name;
        std::string bytes;
        const char* reason;
    } rows[] = {
        {"empty", "", "the file is empty"},
        {"Access 2000", jetHead + std::string(4096, 'x'), "Access"},
        {"Access 2007", aceHead + std::string(4096, 'x'), "Access"},
        {"text", "P0133,slow response,\r\n", "no database of this program"},
        {"one byte", "S", "no database of this program"},
        {"header only", std::string("SQLite format 3\0", 16), "damaged"},
        {"header and rubbish", std::string("SQLite format 3\0", 16) + std::string(4096, '\xA5'), "damaged"},
    };
    for (const auto& row : rows) {
        TemporaryFolder::write(path, row.bytes);
        EXPECT_NE(refusal().find(row.reason), std::string::npos) << row.name << ": " << refusal();
    }
}

TEST_F(DtcDatabaseTest, SaysThatThereIsNoFile)
{
    EXPECT_NE(refusal().find("missing"), std::string::npos) << refusal();
    EXPECT_FALSE(std::filesystem::exists(path)) << "looking for a file does not make it";
}

TEST_F(DtcDatabaseTest, DoesNotCallAFolderAnEmptyFile)
{
    path = folder.path();
    EXPECT_NE(refusal(), "");
    EXPECT_EQ(refusal().find("Delete it"), std::string::npos) << refusal();
}

TEST_F(DtcDatabaseTest, SaysThatTheTableIsMissing)
{
    makeDatabase("CREATE TABLE Customers (Code TEXT, Description TEXT);");
    EXPECT_NE(refusal().find("no table \"DTCset\""), std::string::npos) << refusal();
}

TEST_F(DtcDatabaseTest, SaysThatAColumnIsMissing)
{
    makeDatabase("CREATE TABLE DTCset (Code TEXT, Words TEXT);");
    EXPECT_NE(refusal().find("Description"), std::string::npos) << refusal();
}

TEST_F(DtcDatabaseTest, RefusesDamagedFilesWithoutHarm)
{
    std::string sql = std::string(layout) + "BEGIN;";
    for (int i = 0; i < 1000; ++i)
        sql += "INSERT INTO DTCset VALUES ('P" + std::to_string(1000 + i) +
               "', 'a description that takes up its space', '');";
    makeDatabase(sql + "COMMIT;");
    const std::string whole = bytes();
    ASSERT_GT(whole.size(), 65536U);

    std::mt19937 random(20061101); // the same damages in every run
    int refused = 0;
    const auto damage = [&](const std::string& damaged) {
        TemporaryFolder::write(path, damaged);
        try {
            const auto database = DtcDatabase::openForReading(path);
            for (const std::string_view code : {"P1000", "P1499", "P1999", "P0000"})
                database->describe(code);
        } catch (const DatabaseError&) {
            ++refused;
        }
    };
    for (std::size_t length = 100; length < whole.size(); length += 3000)
        damage(whole.substr(0, length));
    EXPECT_GT(refused, 20) << "most cut files are noticed";

    refused = 0;
    for (int i = 0; i < 100; ++i) {
        std::string damaged = whole;
        const std::size_t page = random() % (whole.size() / 4096) * 4096;
        for (std::size_t at = page; at < page + 64; ++at) // where the database keeps the order of a page
            damaged[at] = static_cast<char>(random());
        damage(damaged);
    }
    EXPECT_GT(refused, 20) << "so are many damaged pages";
}

} // namespace
} // namespace zint
