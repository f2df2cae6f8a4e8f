#include "dtcdb/dtcDatabase.h"
#include "support/temporaryFolder.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>

namespace zint {
namespace {

const std::string layout = "CREATE TABLE DTCset (Code TEXT, Description TEXT, Notes TEXT);"
                           "CREATE UNIQUE INDEX DTCndx ON DTCset (Code COLLATE NOCASE);";

struct DtcDatabaseTest : testing::Test {
    TemporaryFolder folder;
    std::string path = folder.path("Fehlercodes für Ärger ☂.mdb");

    void makeDatabase(const std::string& sql) const
    {
        SQLite::Database(path, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec(sql);
    }

    /// Looks codes up. @return why the file is refused, without what all refusals say; empty when it is not
    std::string refusal() const
    {
        const std::string start = "The code descriptions in \"" + path + "\" can't be used: ";
        try {
            const auto database = DtcDatabaseSource(path).open();
            for (const std::string_view code : {"P0100", "P0299", "U0123"})
                database->describe(code);
        } catch (const DatabaseError& error) {
            const std::string read = "read: ";
            const std::string told =
                std::string(error.what()).replace(start.size() - read.size(), read.size(), "used: ");
            EXPECT_TRUE(told.starts_with(start)) << error.what();
            return std::string(error.what()).substr(start.size());
        }
        return {};
    }
};

TEST_F(DtcDatabaseTest, FindsDescriptions)
{
    EXPECT_FALSE(DtcDatabaseSource(path).available());
    EXPECT_FALSE(DtcDatabaseSource("").available());
    EXPECT_FALSE(DtcDatabaseSource(folder.path()).available()) << "a folder";
    makeDatabase(layout + "INSERT INTO DTCset VALUES ('P0133', 'O2 sensor – slow response', 'n'),"
                          "('u0123', 'Lost communication', ''), ('P0420', NULL, NULL);");
    EXPECT_TRUE(DtcDatabaseSource(path).available());
    const auto database = DtcDatabaseSource(path).open();
    EXPECT_EQ(database->describe("U0123"), "Lost communication") << "without regard to case";
    EXPECT_EQ(database->describe("P0420"), "");
    for (const std::string_view odd : {"P0301", "", "P013", "P0133 ", "P01%", "P0\r\r>", "' OR 1=1 --"})
        EXPECT_EQ(database->describe(odd), std::nullopt) << odd;
    EXPECT_EQ(database->describe("P0133"), "O2 sensor – slow response")
        << "after look-ups that found nothing";
}

TEST_F(DtcDatabaseTest, SaysWhyAFileIsNoDatabaseOfThisProgram)
{
    const std::string missing = "the file is missing or you may not read it.";
    const std::string access =
        "this is a database of the Access engine. Open it in the DTC Editor, which can copy its records.";
    const std::string other = "the file is no database of this program. Choose another file.";
    EXPECT_EQ(refusal(), missing);
    EXPECT_FALSE(fileExists(path)) << "looking for a file does not make it";
    const struct {
        const char* name;
        std::string bytes;
        std::string reason;
    } rows[] = {
        {"empty", "", "the file is empty. Delete it, so that a new database can be made."},
        {"Access 2000", std::string("\0\1\0\0Standard Jet DB\0", 20) + std::string(4096, 'x'), access},
        {"Access 2007", std::string("\0\1\0\0Standard ACE DB\0", 20) + std::string(4096, 'x'), access},
        {"text", "P0133,slow response,\r\n", other},
        {"header only", std::string("SQLite format 3\0", 16),
         "the file is damaged (file is not a database). Restore it from a copy."},
    };
    for (const auto& [name, bytes, reason] : rows) {
        TemporaryFolder::write(path, bytes);
        EXPECT_EQ(refusal(), reason) << name;
    }
    path = folder.path();
    EXPECT_EQ(refusal(), missing) << "a folder is no empty file";

    path = folder.path("another program's");
    makeDatabase("CREATE TABLE Customers (Code TEXT, Description TEXT);");
    EXPECT_EQ(refusal(), "it has no table \"DTCset\". Choose another file.");
    makeDatabase("CREATE TABLE DTCset (Code TEXT, Words TEXT);");
    EXPECT_EQ(refusal(), "no such column: Description.");
}

TEST_F(DtcDatabaseTest, RefusesDamagedFilesWithoutHarm)
{
    makeDatabase("PRAGMA page_size = 512;" + layout +
                 "WITH RECURSIVE n(i) AS (SELECT 100 UNION ALL SELECT i + 1 FROM n WHERE i < 299)"
                 "INSERT INTO DTCset SELECT 'P0' || i, 'a description that takes up its space', '' FROM n;");
    const std::string whole = contents(path);
    ASSERT_GT(whole.size(), 10000U);
    ASSERT_EQ(refusal(), "");

    int refused = 0;
    for (std::size_t at = 512; at < whole.size(); at += 512) {
        TemporaryFolder::write(path, whole.substr(0, at));
        refused += refusal().empty() ? 0 : 1;
        TemporaryFolder::write(path, std::string(whole).replace(at, 64, 64, '\xA5')); // a page's order
        refused += refusal().empty() ? 0 : 1;
    }
    EXPECT_GT(refused, 20) << "most are noticed";
}

TEST_F(DtcDatabaseTest, UndoesWhatAProgramLeftThatWasKilled)
{
    makeDatabase("PRAGMA page_size = 512;" + layout +
                 "WITH RECURSIVE n(i) AS (SELECT 100 UNION ALL SELECT i + 1 FROM n WHERE i < 299)"
                 "INSERT INTO DTCset SELECT 'P0' || i, 'before', '' FROM n;");
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

TEST_F(DtcDatabaseTest, ANewDatabaseIsFilledOrNotMade)
{
    const auto fail = [](DtcDatabase& database) {
        database.add({"P0300", "Misfire", ""});
        throw DatabaseError("no");
    };
    EXPECT_THROW(DtcDatabase::create(path, fail), DatabaseError);
    EXPECT_FALSE(fileExists(path) || fileExists(path + "-journal"));
    const auto made = DtcDatabase::create(path, [](DtcDatabase& database) {
        database.add({"P0300", "Misfire", ""});
    });
    EXPECT_EQ(made->count(), 1);
    std::filesystem::rename(utf8Path(path), utf8Path(folder.path("moved")));
    EXPECT_THROW(made->add({"P0301", "d", ""}), DatabaseError);
}

} // namespace
} // namespace zint
