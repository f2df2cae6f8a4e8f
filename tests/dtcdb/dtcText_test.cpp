#include "dtcdb/dtcText.h"
#include "shared/fileError.h"
#include "support/temporaryFolder.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>

namespace zint {
namespace {

using namespace std::string_literals;
using Fields = DtcFields;

/// A record in one line, its fields in brackets.
std::string text(const DtcRecord& record)
{
    return "[" + record.code + "][" + record.description + "][" + record.notes + "]";
}

TEST(DtcTextTest, TellsWhereACodeIsWrong)
{
    const std::pair<const char*, int> rows[] = {{"P0301", 0},
                                                {"U3FFF", 0},
                                                {"B1A0C", 0},
                                                {"C2000", 0},
                                                {"P030", 5},
                                                {"", 1},
                                                {"P", 2},
                                                {"P03011", 5},
                                                {"X0301", 1},
                                                {"p0301", 1},
                                                {"P4301", 2},
                                                {"P0G01", 3},
                                                {"P03G1", 4},
                                                {"P030f", 5},
                                                {"Pxxyy", 2},
                                                {" P030", 1},
                                                {"P\xC3\xA9"
                                                 "301",
                                                 2},
                                                {"\xC3\xA9"
                                                 "030",
                                                 5}};
    for (const auto& [code, fault] : rows)
        EXPECT_EQ(codeFault(code), fault) << code;
}

TEST(DtcTextTest, SplitsALine)
{
    const std::string wide(100, 'd');
    const std::string umlauts = "\xC3\xA4" + std::string(99, 'd');
    struct Row {
        Fields fields;
        std::string line;
        std::string record;
    };
    for (const Row& row : {
             Row{Fields::comma, "P0133,Heated O2 sensor circuit,Bank 1",
                 "[P0133][Heated O2 sensor circuit][Bank 1]"},
             {Fields::comma, "   P0133,a,b,c", "[P0133][a][b,c]"},
             {Fields::comma, "P0133", "[P0133][ ][ ]"},
             {Fields::comma, "P0133,a,", "[P0133][a][ ]"},
             {Fields::comma, "", "[ ][ ][ ]"},
             {Fields::comma, ",a", "[ ][a][ ]"},
             {Fields::comma, "P0133," + wide + "more", "[P0133][" + wide + "more][more]"},
             {Fields::comma, "P0133," + umlauts + "more", "[P0133][" + umlauts + "more][more]"},
             {Fields::comma, "P0133," + wide + "more,", "[P0133][" + wide + "more][ ]"},
             {Fields::tab, "P0133\ta,b\tc\td", "[P0133][a,b][c\td]"},
             {Fields::space, "P0133 Heated O2 sensor circuit", "[P0133][Heated O2 sensor circuit][ ]"},
             {Fields::fixed, "P0133description", "[P0133][description][ ]"},
             {Fields::fixed, "P0133" + wide + "n", "[P0133][" + wide + "][n]"},
             {Fields::fixed, "P0133Misfire" + std::string(93, ' ') + "n", "[P0133][Misfire][n]"},
             {Fields::fixed, "P0133" + std::string(100, ' ') + "n", "[P0133][ ][n]"},
             {Fields::fixed, "P01", "[P01][ ][ ]"},
         })
        EXPECT_EQ(text(readDtcLine(row.line, {.fields = row.fields})), row.record) << row.line;
    EXPECT_EQ(text(readDtcLine("P0133,a,b", {.noNotes = true})), "[P0133][a][ ]");
}

TEST(DtcTextTest, JoinsALine)
{
    const DtcRecord record{"P0133", "Heated O2 sensor circuit", "Bank 1"};
    const DtcRecord bare{"P0133", "a", " "};
    const std::string pad(100 - record.description.size(), ' ');
    struct Row {
        DtcRecord record;
        DtcTextOptions options;
        std::string line;
    };
    for (const Row& row : {
             Row{record, {.delimNotes = true}, "P0133,Heated O2 sensor circuit,Bank 1"},
             {record, {}, "P0133,Heated O2 sensor circuitBank 1"},
             {record, {.delimNotes = true, .noNotes = true}, "P0133,Heated O2 sensor circuit"},
             {record, {.fields = Fields::tab, .delimNotes = true}, "P0133\tHeated O2 sensor circuit\tBank 1"},
             {record, {.fields = Fields::space, .delimNotes = true}, "P0133 Heated O2 sensor circuit Bank 1"},
             {record, {.fields = Fields::fixed}, "P0133Heated O2 sensor circuit" + pad + "Bank 1"},
             {bare, {.delimNotes = true}, "P0133,a, "},
             {bare, {.fields = Fields::tab, .delimNotes = true}, "P0133\ta"},
             {bare, {.fields = Fields::fixed, .delimNotes = true}, "P0133a"},
             {{"P0133", "a", "two\r\nlines"}, {.delimNotes = true}, "P0133,a,two  lines"},
         })
        EXPECT_EQ(dtcLine(row.record, row.options), row.line);
}

struct DtcFileTest : testing::Test {
    TemporaryFolder folder;
    std::string file = folder.path("codes.txt");
    std::unique_ptr<DtcDatabase> database = DtcDatabase::create(folder.path("dtc.mdb"));

    /// What came of it in the order of the status: added, skipped, present, lines.
    std::vector<std::int64_t> import(const std::string& bytes, const DtcTextOptions& options = {})
    {
        TemporaryFolder::write(file, bytes);
        last = importDtcText(*database, file, options, unwatched);
        return {last.added, last.skipped, last.present, last.lines};
    }

    std::string table()
    {
        std::string all;
        for (auto entry = database->first(); entry; entry = database->after(entry->record.code))
            all += text(entry->record);
        return all;
    }

    using Counts = std::vector<std::int64_t>;
    DtcImport last;
};

TEST_F(DtcFileTest, ImportsAddsAndOverwrites)
{
    EXPECT_EQ(import("P0300,Random misfire,n1\r\nP0100,MAF circuit\np0133,no code\r\n\r\nP03001,too long\n"
                     "P0300,twice\nP0100,last"),
              (Counts{2, 3, 2, 7}));
    EXPECT_EQ(table(), "[P0100][MAF circuit][ ][P0300][Random misfire][n1]");
    ASSERT_EQ(last.firstSkipped.size(), 3U);
    EXPECT_EQ(last.firstSkipped[0].line, 3U);
    EXPECT_EQ(last.firstSkipped[0].code, "p0133");
    EXPECT_EQ(last.firstSkipped[1].line, 4U);

    EXPECT_EQ(import("P0300,Misfire,n2\nP0100,MAF,n3\n", {.dupOver = true, .noNotes = true}),
              (Counts{0, 0, 2, 2}));
    EXPECT_EQ(table(), "[P0100][MAF][ ][P0300][Misfire][n1]") << "the notes stay";
    EXPECT_EQ(import("P0300,Misfire,n2\n", {.dupOver = true}), (Counts{0, 0, 1, 1}));
    EXPECT_EQ(table(), "[P0100][MAF][ ][P0300][Misfire][n2]");
}

TEST_F(DtcFileTest, KeepsSizesAndReadsOtherEncodings)
{
    import("P0001," + std::string(150, 'd') + "," + std::string(300, 'n') + "\nP0002,\xE4\x80 old,\n");
    const DtcRecord wide = database->find("P0001")->record;
    EXPECT_EQ(wide.description.size(), 100U);
    EXPECT_EQ(wide.notes.size(), 255U);
    EXPECT_EQ(database->find("P0002")->record.description, "\xC3\xA4\xE2\x82\xAC old");
}

TEST_F(DtcFileTest, AnImportIsAllOrNothing)
{
    import("P0300,Misfire\n");
    const std::string before = table();
    EXPECT_THROW(import("P0301,a\nP0302,b\0\nP0303,c\n"s + std::string(1, '\0')), FileError);
    EXPECT_THROW(importDtcText(*database, folder.path("none"), {}, unwatched), FileError);
    struct Stop final : Progress {
        void advance(double done) override
        {
            EXPECT_TRUE(done > 0 && done <= 1);
            throw WorkStopped();
        }
    } stop;
    std::string many;
    for (int i = 0; i < 2000; ++i)
        many += "P0" + std::to_string(100 + i % 900) + ",d\n";
    TemporaryFolder::write(file, many);
    EXPECT_THROW(importDtcText(*database, file, {}, stop), WorkStopped);
    EXPECT_EQ(table(), before);
    EXPECT_EQ(database->count(), 1);
}

TEST_F(DtcFileTest, ExportsWhatItImportsAgain)
{
    import("P0300,Misfire,n1\nP0100,MAF\nU0100,Lost communication,with, commas\n");
    const std::string before = table();
    EXPECT_EQ(exportDtcText(*database, file, {.delimNotes = true}), 3);
    EXPECT_EQ(contents(file), "P0100,MAF, \r\nP0300,Misfire,n1\r\nU0100,Lost communication,with, commas\r\n");
    const std::string exported = contents(file);
    database = DtcDatabase::create(folder.path("again.mdb"));
    EXPECT_EQ(import(exported), (Counts{3, 0, 0, 3}));
    EXPECT_EQ(table(), before);
    EXPECT_THROW(exportDtcText(*database, folder.path("none/codes.txt"), {}), FileError);
    EXPECT_THROW(exportDtcText(*database, folder.path("./again.mdb"), {}), FileError)
        << "the database itself";
    EXPECT_EQ(table(), before);
}

TEST_F(DtcFileTest, AWalkEndsWhateverAnotherProgramHasPutIntoTheTable)
{
    import("P0300,Misfire\n");
    SQLite::Database(database->path(), SQLite::OPEN_READWRITE)
        .exec("INSERT INTO DTCset VALUES (x'50', 'bytes for a code', ''), (NULL, 'none', '')");
    int steps = 0;
    for (auto entry = database->first(); entry && steps < 10; entry = database->after(entry->record.code))
        ++steps;
    EXPECT_LE(steps, 3);
}

TEST_F(DtcFileTest, SetsUpADatabaseOrLeavesNothing)
{
    const std::string path = folder.path("fresh.mdb");
    EXPECT_THROW(setUpDtcDatabase(path, folder.path("none"), unwatched), FileError);
    EXPECT_FALSE(fileExists(path));
    TemporaryFolder::write(file, "P0300,Misfire\n");
    EXPECT_EQ(setUpDtcDatabase(path, file, unwatched).added, 1);
    EXPECT_EQ(DtcDatabase::openForReading(path)->describe("P0300"), "Misfire");
    const std::string bytes = contents(path);
    EXPECT_THROW(setUpDtcDatabase(path, file, unwatched), DatabaseError);
    EXPECT_EQ(contents(path), bytes);
}

} // namespace
} // namespace zint
