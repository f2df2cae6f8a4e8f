#include "dtcdb/accessDatabase.h"
#include "dtcdb/dtcDatabase.h"
#include "support/accessFile.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace zint {
namespace {

struct AccessDatabaseTest : testing::Test {
    TemporaryFolder folder;
    std::string path = folder.path("Fehlercodes für Ärger ☂.mdb");
    AccessFile file{.rows = {{"P0133", "O2 sensor", "n"}, {"P0300", "Misfire", "m"}}};

    void SetUp() override
    {
        if (!canReadAccessDatabases())
            GTEST_SKIP() << "built without mdbtools";
    }

    /// @return why the file is refused, without what all refusals say; empty when it is not
    std::string refusalOf(const std::string& bytes) const
    {
        TemporaryFolder::write(path, bytes);
        return refusal();
    }

    std::string refusal() const
    {
        const std::string start = "The code descriptions in \"" + path + "\" can't be read: ";
        try {
            readAccessDatabase(path);
        } catch (const DatabaseError& error) {
            EXPECT_TRUE(std::string_view(error.what()).starts_with(start)) << error.what();
            return std::string(error.what()).substr(start.size());
        }
        return {};
    }
};

TEST_F(AccessDatabaseTest, ReadsAllRecordsOfBothGenerations)
{
    file.table = "dtcSET";
    file.fields = {{"NOTES", AccessFile::text, 255},
                   {"Severity", AccessFile::text, 10},
                   {"code", AccessFile::text, 5},
                   {"Description", AccessFile::text, 100}};
    file.rows = {{"first", "x", "P0133", "O2 sensor – slow response"},
                 {"gone", "x", "P0134", "deleted"},
                 {std::nullopt, "x", "P0300", "Zündaussetzer, prüfe é"},
                 {std::string(255, 'N'), std::nullopt, "P0420", std::string(100, 'D')},
                 {"", "", "u0123", std::nullopt}};
    file.deleted = {1};
    std::vector<DtcRecord> expected{{"P0133", "O2 sensor – slow response", "first"},
                                    {"P0300", "Zündaussetzer, prüfe é", ""},
                                    {"P0420", std::string(100, 'D'), std::string(255, 'N')},
                                    {"u0123", "", ""}};
    for (int i = 1000; i < 1300; ++i) { // over several pages
        const std::string number = std::to_string(i);
        file.rows.push_back({std::nullopt, "x", "P" + number, "description of code " + number});
        expected.push_back({"P" + number, "description of code " + number, ""});
    }
    setenv("MDBICONV", "ISO-8859-1", 1);
    for (const AccessFile::Jet jet : {AccessFile::Jet::three, AccessFile::Jet::four}) {
        for (const std::uint32_t key : {0U, 0x12345678U}) {
            file.jet = jet;
            file.key = key;
            const std::string bytes = file.bytes();
            TemporaryFolder::write(path, bytes);
            EXPECT_EQ(readAccessDatabase(path), expected) << static_cast<int>(jet) << " " << key;
            EXPECT_EQ(contents(path), bytes) << "the original stays as it was";
        }
    }
}

TEST_F(AccessDatabaseTest, ReadsNotesOfUnlimitedLengthAndNoRecordsAtAll)
{
    file.fields[2].type = AccessFile::memo;
    file.rows = {{"P0133", "O2 sensor", std::string(700, 'N')}};
    for (const AccessFile::Jet jet : {AccessFile::Jet::three, AccessFile::Jet::four}) {
        file.jet = jet;
        TemporaryFolder::write(path, file.bytes());
        EXPECT_EQ(readAccessDatabase(path),
                  std::vector({DtcRecord{"P0133", "O2 sensor", std::string(700, 'N')}}));
    }
    file.rows.clear();
    TemporaryFolder::write(path, file.bytes());
    EXPECT_TRUE(readAccessDatabase(path).empty());
}

TEST_F(AccessDatabaseTest, SaysWhyAFileIsNotTaken)
{
    const std::string missing = "the file is missing or you may not read it.";
    const std::string other = "this is no database of the Access engine. Choose another file.";
    EXPECT_EQ(refusal(), missing);
    path = folder.path();
    EXPECT_EQ(refusal(), missing);
    path = folder.path("a.mdb");
    EXPECT_EQ(refusalOf(""), other);
    EXPECT_EQ(refusalOf("SQLite format 3"), other);
    EXPECT_EQ(refusalOf(std::string(20000, 'x')), other);

    AccessFile changed = file;
    changed.table = "DTCsets";
    EXPECT_EQ(refusalOf(changed.bytes()), "it has no table \"DTCset\". Choose another file.");
    const std::string noNotes = "its table \"DTCset\" has no text field \"Notes\". Choose another file.";
    changed = file;
    changed.fields[2].name = "Note";
    EXPECT_EQ(refusalOf(changed.bytes()), noNotes);
    changed.fields[2] = {"Notes", AccessFile::longInteger, 4};
    changed.rows.clear();
    EXPECT_EQ(refusalOf(changed.bytes()), noNotes);

    std::string newer = file.bytes();
    newer[0x14] = '\x42';
    EXPECT_TRUE(refusalOf(newer).starts_with("it was made by a newer Access engine"));
    std::filesystem::resize_file(path, 65U * 1024 * 1024);
    EXPECT_TRUE(refusal().starts_with("the file is larger than 64 MB"));
}

TEST_F(AccessDatabaseTest, RefusesDamagedFiles)
{
    const std::string damaged = "the file is damaged or encrypted. Restore it from a copy, or let the "
                                "program that made it repair it.";
    for (const AccessFile::Jet jet : {AccessFile::Jet::three, AccessFile::Jet::four}) {
        file.jet = jet;
        const std::string sound = file.bytes();
        const std::size_t page = file.pageSize();
        EXPECT_EQ(refusalOf(sound.substr(0, 20)), damaged);
        for (std::size_t pages = 1; pages < 6; ++pages) // all but the page with the rows
            EXPECT_EQ(refusalOf(sound.substr(0, pages * page)), damaged) << pages;
        EXPECT_EQ(refusalOf(sound.substr(0, 6 * page)),
                  "the file is damaged: of its 2 records, 0 were found. Restore it from a copy, or let the "
                  "program that made it repair it.");

        std::string hidden = sound; // the pages are enciphered with a key that the file does not tell
        for (std::size_t i = page; i < hidden.size(); ++i)
            hidden[i] = static_cast<char>(hidden[i] ^ static_cast<char>(i * 7 + 3));
        EXPECT_EQ(refusalOf(hidden), damaged);

        // The page maps have no bytes or are of an unknown kind: beginnings of rows, from the page's tenth or
        // fourteenth byte on.
        const std::size_t starts = 3 * page + (jet == AccessFile::Jet::three ? 10 : 14);
        for (const std::size_t map : {0U, 2U}) {
            std::string noMap = sound;
            noMap[starts + 2 * map] = '\xFE';
            noMap[starts + 2 * map + 1] = static_cast<char>(page / 256 - 1);
            EXPECT_NE(refusalOf(noMap), "") << map;
            std::string oddMap = sound;
            oddMap[static_cast<unsigned char>(sound[starts + 2 * map]) +
                   256U * static_cast<unsigned char>(sound[starts + 2 * map + 1]) + 3 * page] = '\x7F';
            EXPECT_EQ(refusalOf(oddMap), damaged) << map;
        }

        std::string lostRow = sound; // its beginning lies before the page's header ends
        lostRow[6 * page + starts - 3 * page] = '\0';
        lostRow[6 * page + starts - 3 * page + 1] = '\0';
        EXPECT_TRUE(refusalOf(lostRow).starts_with("the file is damaged: of its 2 records")) << refusal();
    }
}

TEST(AccessDatabase, WithoutTheLibrarySaysSo)
{
    if (canReadAccessDatabases())
        GTEST_SKIP() << "built with mdbtools";
    try {
        readAccessDatabase("a.mdb");
        FAIL();
    } catch (const DatabaseError& error) {
        EXPECT_EQ(
            std::string_view(error.what()),
            "The code descriptions in \"a.mdb\" can't be read: this is a database of the Access engine, "
            "and this copy of the program was built without its reader. Choose another file.");
    }
}

} // namespace
} // namespace zint
