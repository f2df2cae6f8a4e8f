#include "dtcdb/dtcText.h"
#include "shared/fileError.h"
#include "support/failure.h"
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

TEST(DtcTextTest, TellsWhereACodeIsWrongAndWhoseItIs)
{
    const std::pair<const char*, int> rows[] = {{"P0301", 0},  {"U3FFF", 0}, {"B1A0C", 0}, {"C2000", 0},
                                                {"", 1},       {"p0301", 1}, {"P4301", 2}, {"Pxxyy", 2},
                                                {"Pé301", 2},  {"P0G01", 3}, {"P03G1", 4}, {"P030", 5},
                                                {"P03011", 5}, {"P030f", 5}, {"é030", 5}};
    for (const auto& [code, fault] : rows)
        EXPECT_EQ(codeFault(code), fault) << code;
    for (const char* makers : {"P1234", "P3399", "C1000", "B2FFF", "U1000"})
        EXPECT_TRUE(isMakersCode(makers)) << makers;
    for (const char* standard : {"P0301", "P2000", "P3400", "U3000", "B0001", "p1234", ""})
        EXPECT_FALSE(isMakersCode(standard)) << standard;
}

TEST(DtcTextTest, SplitsALine)
{
    const std::string wide = "\xC3\xA4" + std::string(99, 'd'); // 100 characters
    const std::tuple<Fields, std::string, std::string> rows[] = {
        {Fields::comma, "   P0133,a,b,c", "[P0133][a][b,c]"},
        {Fields::comma, "P0133", "[P0133][ ][ ]"},
        {Fields::comma, ",a,", "[ ][a][ ]"},
        {Fields::comma, "P0133," + wide + "more", "[P0133][" + wide + "more][more]"},
        {Fields::tab, "P0133\ta,b\tc\td", "[P0133][a,b][c\td]"},
        {Fields::space, "P0133 a b,c", "[P0133][a b,c][ ]"},
        {Fields::fixed, "P0133" + wide + "n", "[P0133][" + wide + "][n]"},
        {Fields::fixed, "P0133Misfire" + std::string(93, ' ') + "n", "[P0133][Misfire][n]"},
        {Fields::fixed, "P01", "[P01][ ][ ]"}};
    for (const auto& [fields, line, record] : rows)
        EXPECT_EQ(text(readDtcLine(line, {.fields = fields})), record) << line;
    EXPECT_EQ(text(readDtcLine("P0133,a,b", {.noNotes = true})), "[P0133][a][ ]");
}

TEST(DtcTextTest, JoinsALine)
{
    const DtcRecord record{"P0133", "Heated O2 sensor", "Bank 1"}, bare{"P0133", "a", " "},
        brief{"P0133", "abc", "n"}, odd{"P0133", "two\r\nlines", "5\" hose"};
    const std::tuple<DtcRecord, DtcTextOptions, std::string> rows[] = {
        {record, {.delimNotes = true}, "P0133,Heated O2 sensor,Bank 1"},
        {record, {}, "P0133,Heated O2 sensorBank 1"},
        {record, {.fields = Fields::tab, .delimNotes = true}, "P0133\tHeated O2 sensor\tBank 1"},
        {brief, {.fields = Fields::fixed}, "P0133abc" + std::string(97, ' ') + "n"},
        {record, {.noNotes = true}, "P0133,Heated O2 sensor"},
        {bare, {.delimNotes = true}, "P0133,a, "},
        {bare, {.fields = Fields::tab, .delimNotes = true}, "P0133\ta"},
        {odd, {.delimNotes = true}, "P0133,two  lines,5\" hose"},
        {odd, {.fields = Fields::csv}, "P0133,\"two\r\nlines\",\"5\"\" hose\""},
        {bare, {.fields = Fields::csv}, "P0133,a,\" \""},
        {bare, {.fields = Fields::csv, .noNotes = true}, "P0133,a"}};
    for (const auto& [joined, options, line] : rows)
        EXPECT_EQ(dtcLine(joined, options), line);
}

struct DtcFileTest : testing::Test {
    TemporaryFolder folder;
    std::string file = folder.path("codes.txt");
    std::unique_ptr<DtcDatabase> database = DtcDatabase::create(folder.path("dtc.mdb"));
    DtcImport last;

    /// What the status tells of it.
    std::string import(const std::string& bytes, const DtcTextOptions& options = {})
    {
        TemporaryFolder::write(file, bytes);
        last = importDtcText(*database, file, options, unwatched);
        return importText(last, options.dupOver);
    }

    void expectRefusal(const std::string& bytes, Fields fields, const char* why)
    {
        const std::string told = failureOf<FileError>([&] { import(bytes, {.fields = fields}); });
        EXPECT_NE(told.find(why), std::string::npos) << told;
    }

    std::string table()
    {
        std::string all;
        for (auto entry = database->first(); entry; entry = database->after(entry->record.code))
            all += text(entry->record);
        return all;
    }
};

TEST_F(DtcFileTest, ImportsAddsAndOverwrites)
{
    EXPECT_EQ(import("P0300,Misfire,n1\r\nP0100,MAF\rp0133,no code\nP0300,twice\nP0100,last\n\x1A"),
              "2 DTC('s) add, 1 skip, 2dup, 5 total");
    EXPECT_EQ(table(), "[P0100][MAF][ ][P0300][Misfire][n1]");
    SQLite::Database(database->path(), SQLite::OPEN_READWRITE).exec("UPDATE DTCset SET Code = lower(Code)");
    EXPECT_EQ(import("P0300,other,n2\n", {.dupOver = true, .noNotes = true}),
              "0 DTC('s) add, 0 skip, 1upd, 1 total");
    EXPECT_EQ(table(), "[p0100][MAF][ ][p0300][other][n1]") << "notes and capitals stay";
    import("P0100,other," + std::string(300, 'n') + "\nP0300," + std::string(150, 'd') + ",n2\n",
           {.dupOver = true});
    EXPECT_EQ(table(),
              "[p0100][other][" + std::string(255, 'n') + "][p0300][" + std::string(100, 'd') + "][n2]");
}

TEST_F(DtcFileTest, ReadsWhatSpreadsheetsWrite)
{
    const DtcTextOptions csv{.fields = Fields::csv};
    EXPECT_EQ(import("\xEF\xBB\xBF"
                     "DTC;Meaning;Remarks;\r\n"
                     "P0301 ;\"Misfire; cylinder \"\"1\"\"\";n;\r\n"
                     "P0302; \"two\r\nlines\" ;5\" hose, red;more\r\n"
                     "P0303;only\r\np0304;\"small\"\r\n;;\r\n",
                     csv),
              "3 DTC('s) add, 2 skip, 0dup, 5 total");
    EXPECT_EQ(table(),
              "[P0301][Misfire; cylinder \"1\"][n][P0302][two\nlines][5\" hose, red][P0303][only][ ]");
    EXPECT_EQ(skippedTexts(last),
              (std::vector<std::string>{"Line 6: p0304: use capitals", "Line 7: no code at its beginning"}));
    EXPECT_EQ(importHint(last), "1 row(s) have more than three columns; the others were left out");

    import("U0100,\" with, \"\" and ; \",\nU0101,,\" \"\n", csv);
    const std::string before = table();
    EXPECT_TRUE(before.ends_with("[U0100][ with, \" and ; ][][U0101][][ ]")) << before;
    EXPECT_EQ(exportHint(exportDtcFile(*database, file, csv)), "");
    EXPECT_TRUE(contents(file).starts_with("\xEF\xBB\xBF"
                                           "Code,Description,Notes\r\nP0301,"));
    database = DtcDatabase::create(folder.path("again.mdb"));
    importDtcText(*database, file, csv, unwatched);
    EXPECT_EQ(table(), before) << "a round trip is exact";
}

TEST_F(DtcFileTest, TellsWhatIsWrongWithALine)
{
    const std::pair<std::string, std::string> rows[] = {
        {"p1236,small", ": p1236: use capitals"},
        {"\"P0133\",\"Sensor\"", ": quotation marks were taken as text: choose Spreadsheet CSV"},
        {"P0301;Misfire", ": semicolons were taken as text: choose Spreadsheet CSV"},
        {"Code,Description", " looks like a heading"},
        {"", ": no code at its beginning"},
        {"100 " + std::string(40, 'x'), ": \"100 xxxxxxxxxxxxxxxx\" is no code"}};
    for (const auto& [line, why] : rows) {
        import(line + "\n");
        EXPECT_EQ(skippedTexts(last), std::vector{"Line 1" + why});
    }
}

TEST_F(DtcFileTest, RefusesWhatIsNoTextAsAWhole)
{
    import("P0300,Misfire\n");
    expectRefusal("P0301,a\nP0302,b\0\n"s, Fields::comma, "line 2: the file is no text");
    expectRefusal("\xFF\xFEP\0"s, Fields::comma, "the file is UTF-16: save it as UTF-8");
    expectRefusal("U0001,a\nU0002,\"b\nU0003,c\n", Fields::csv, "line 2: a quotation mark is not closed");
    expectRefusal("U0001,a\nU0002,\"b\nU0003,\"c\"\n", Fields::csv, "line 2: text follows a closing");
    EXPECT_EQ(table(), "[P0300][Misfire][ ]");
}

TEST_F(DtcFileTest, ExportsAndTellsWhatWillNotReadBack)
{
    import("P0300,Misfire,n1\nP0100,MAF\nU0100,Lost communication,with, commas\n");
    const std::string before = table();
    DtcExport done = exportDtcFile(*database, file, {.delimNotes = true});
    EXPECT_EQ(exportText(done) + exportHint(done), "3 DTC('s) exported");
    EXPECT_EQ(contents(file), "P0100,MAF, \r\nP0300,Misfire,n1\r\nU0100,Lost communication,with, commas\r\n");
    import(contents(file), {.dupOver = true});
    EXPECT_EQ(table(), before);
    EXPECT_TRUE(exportHint(exportDtcFile(*database, file, {})).starts_with("2 record(s) will not "));

    SQLite::Database other(database->path(), SQLite::OPEN_READWRITE);
    other.exec("INSERT INTO DTCset VALUES ('p0001', 'small', ''), ('P0002', 'one' || char(13) || 'two', ''), "
               "('P0003', 'x', replace(hex(zeroblob(150)), '0', 'd')), ('P0004', 'x' || char(0), ''), "
               "(' P0005', 'x', '')");
    EXPECT_EQ(exportDtcFile(*database, file, {.fields = Fields::csv}).altered, 5) << "none is read as it is";
    other.exec("INSERT INTO DTCset VALUES (x'50', 'bytes for a code', ''), (NULL, 'none', '')");
    EXPECT_LE(exportDtcFile(*database, file, {}).count, 9) << "it ends, whatever another program has added";
}

} // namespace
} // namespace zint
