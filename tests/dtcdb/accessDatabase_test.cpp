#include "dtcdb/accessDatabase.h"
#include "dtcdb/dtcDatabase.h"
#include "support/failure.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace zint {
namespace {

// Both hold fields beyond those read, a deleted record, and records on several pages. The newer one is
// enciphered, and its notes are of unlimited length.
const std::string older = ZINT_ACCESS_FILES "/jet3.mdb";
const std::string newer = ZINT_ACCESS_FILES "/jet4.mdb";

struct AccessDatabaseTest : testing::Test {
    TemporaryFolder folder;
    std::string path = folder.path("Fehlercodes für Ärger ☂.mdb");

    std::string refusalOf(const std::string& bytes) const
    {
        TemporaryFolder::write(path, bytes);
        return failureOf<DatabaseError>([this] { readAccessDatabase(path); });
    }
};

TEST_F(AccessDatabaseTest, ReadsAllRecordsOfBothGenerations)
{
    if (!canReadAccessDatabases())
        GTEST_SKIP() << "built without mdbtools";
#ifdef __unix__
    setenv("MDBICONV", "ISO-8859-1", 1);
#endif
    for (const auto& [file, notes] : {std::pair(older, 255U), std::pair(newer, 700U)}) {
        std::vector<DtcRecord> expected{{"P0133", "O2 sensor – slow response", "first"},
                                        {"P0300", "Zündaussetzer, prüfe é", ""},
                                        {"p0300", "twice", ""},
                                        {"LONGCODE", "d", ""},
                                        {"P0420", std::string(100, 'D'), std::string(notes, 'N')},
                                        {"u0123", "", ""}};
        for (int i = 1000; i < 1060; ++i)
            expected.push_back({"P" + std::to_string(i), "description of code " + std::to_string(i), ""});
        EXPECT_EQ(readAccessDatabase(file), expected);
    }
}

TEST_F(AccessDatabaseTest, SaysWhyAFileIsNotTaken)
{
    if (!canReadAccessDatabases()) {
        EXPECT_NE(refusalOf("").find("was built without its reader"), std::string::npos);
        return;
    }
    const std::string sound = contents(older);
    const auto patched = [&](std::size_t at, std::string_view by) {
        return std::string(sound).replace(at, by.size(), by);
    };
    const std::string damaged = "the file is damaged or encrypted";
    constexpr std::size_t page = 2048;
    constexpr std::size_t maps = 3 * page; // the page maps of the tables
    const std::pair<std::string, std::string> rows[] = {
        {"", "this is no database of the Access engine"},
        {patched(sound.find("dtcSET"), "dtcSEX"), "it has no table \"DTCset\""},
        {patched(sound.find("NOTES"), "NOTED"), "its table \"DTCset\" has no text field \"Notes\""},
        {patched(0x14, "\x42"), "it was made by a newer Access engine"},
        {sound.substr(0, 5 * page), damaged},
        {sound.substr(0, 7 * page), "the file is damaged: of its 66 records, "},
        {patched(maps + 10, "\xFE\x07"), damaged}, // a map without bytes, which the library would overrun
        {std::string(65U * 1024 * 1024, 'x'), "the file is larger than 64 MB"}};
    for (const auto& [bytes, why] : rows)
        EXPECT_TRUE(
            refusalOf(bytes).starts_with("The code descriptions in \"" + path + "\" can't be read: " + why))
            << refusalOf(bytes);
    EXPECT_THROW(readAccessDatabase(folder.path("missing")), DatabaseError);
}

} // namespace
} // namespace zint
