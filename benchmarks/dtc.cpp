// The description database at its largest: the import of a text file against the sqlite3 program, which
// imports the same lines into the same table with the same index, in turn; and what a press in the editor
// takes, the number of records in its frame included.

#include "dtcdb/dtcEditor.h"
#include "dtcdb/dtcText.h"
#include "noPrompts.h"
#include "support/temporaryFolder.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr int rounds = 7;
constexpr std::size_t manyLines = 100000;
constexpr int presses = 1000;

using Codes = std::vector<std::string>;

std::string code(char letter, unsigned number)
{
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%c%04X", letter, number);
    return text.data();
}

/// All codes that there are, in order.
Codes allCodes()
{
    Codes codes;
    for (const char letter : {'B', 'C', 'P', 'U'}) {
        for (unsigned number = 0; number <= 0x3FFF; ++number)
            codes.push_back(code(letter, number));
    }
    return codes;
}

/// As many lines as were asked for, in no order; some codes come again.
Codes mixed(Codes codes, std::size_t lines)
{
    const std::size_t different = codes.size();
    while (codes.size() < lines)
        codes.push_back(codes[codes.size() - different]);
    std::shuffle(codes.begin(), codes.end(), std::mt19937{1});
    return codes;
}

void writeLines(const std::string& path, const Codes& codes)
{
    std::ofstream file(path, std::ios::binary);
    for (std::size_t n = 0; n < codes.size(); ++n)
        file << codes[n] << ",Sensor " << n << " circuit range or performance,Bank " << n % 4 << "\r\n";
    file.close();
    if (!file)
        fail("the lines can't be written");
}

/// The files of an import.
struct Files {
    std::string text;
    std::string empty; ///< a database without records
    std::string ours;
    std::string sqlite;
};

double importSeconds(const Files& files)
{
    fs::copy_file(files.empty, files.ours, fs::copy_options::overwrite_existing);
    const auto start = RateClock::now();
    const auto database = zint::DtcDatabase::open(files.ours);
    importDtcText(*database, files.text, {}, zint::unwatched);
    return secondsSince(start);
}

/// It tells of each code that comes again, which nobody reads here.
double sqliteSeconds(const Files& files, const std::string& command)
{
    fs::copy_file(files.empty, files.sqlite, fs::copy_options::overwrite_existing);
    const std::string line = "sqlite3 -batch -init /dev/null -csv '" + files.sqlite + "' \"" + command +
                             "\" >/dev/null 2>/dev/null";
    const auto start = RateClock::now();
    if (std::system(line.c_str()) == -1)
        fail("sqlite3 can't be started");
    return secondsSince(start);
}

std::string contentOf(const std::string& path)
{
    std::ostringstream text;
    exportDtcText(*zint::DtcDatabase::openForReading(path), text, {.delimNotes = true});
    return text.str();
}

void measureImport(const char* name, const Files& files, const Codes& codes)
{
    writeLines(files.text, codes);
    std::vector<double> ours;
    std::vector<double> sqlite;
    std::vector<double> sqliteStart;
    for (int round = 0; round < rounds; ++round) {
        ours.push_back(importSeconds(files));
        sqliteStart.push_back(sqliteSeconds(files, "SELECT * FROM DTCset"));
        sqlite.push_back(sqliteSeconds(files, ".import '" + files.text + "' DTCset"));
    }
    if (contentOf(files.ours) != contentOf(files.sqlite))
        fail("the program and sqlite3 import different records");
    const double plain = median(sqlite) - median(sqliteStart); // without the start of a program
    std::printf("import of %zu lines, %s: %.3f s, sqlite3 %.3f s (medians of %d): ratio %.2f (%s)\n",
                codes.size(), name, median(ours), plain, rounds, median(ours) / plain,
                atMost(2, median(ours) / plain).c_str());
}

/// Adds as many records as it takes; their codes are none, as other programs may have them.
void fillUp(const std::string& path, std::int64_t records)
{
    const auto database = zint::DtcDatabase::open(path);
    std::int64_t count = database->count();
    database->inOneStep([&] {
        for (unsigned number = 0; count < records; ++number)
            count += database->add({.code = code('M', number), .description = "Sensor", .notes = " "});
    });
}

/// Everything else is typed.
struct NoDialogs final : zint::FileDialogs {
    std::string chooseToOpen(const zint::FileKinds&, const std::string&) override { return {}; }
    std::string chooseToSave(const zint::FileKinds&, const std::string&, const std::string&) override
    {
        return {};
    }
};

template <typename Press>
void measurePress(const char* name, const Press& press)
{
    std::vector<double> took;
    for (int n = 0; n < presses; ++n) {
        const auto start = RateClock::now();
        press();
        took.push_back(secondsSince(start) * 1e3);
    }
    std::printf("  %s: %.3f ms, the longest %.3f ms (median of %d; %s ms)\n", name, median(took),
                *std::max_element(took.begin(), took.end()), presses, atMost(1, median(took)).c_str());
}

void measureEditor(const std::string& path, const Codes& codes)
{
    NoPrompts prompts;
    NoDialogs dialogs;
    zint::ProgramValues values;
    values.parmDTCdb = path;
    zint::DtcEditor editor({prompts, dialogs, values});
    editor.pressControl();
    std::printf("%s\n", editor.panel().DTCframe.c_str());
    std::mt19937 random{1};
    const auto anyCode = [&] { return codes[random() % codes.size()]; };
    measurePress("search of a code", [&] { editor.pressSearch(anyCode()); });
    measurePress("search of the closest one", [&] { editor.pressSearch(anyCode() + "?"); });
    measurePress("next", [&] { editor.pressNext(); });
    measurePress("previous", [&] { editor.pressPrev(); });
    measurePress("last", [&] { editor.pressLast(); });
    measurePress("first", [&] { editor.pressFirst(); });
}

} // namespace

int main()
{
    const zint::TemporaryFolder folder;
    const Files files{folder.path("dtc.txt"), folder.path("empty.mdb"), folder.path("ours.mdb"),
                      folder.path("sqlite.mdb")};
    zint::DtcDatabase::create(files.empty);
    const Codes codes = allCodes();
    measureImport("all codes in order", files, codes);
    measureImport("all codes in no order, some again", files, mixed(codes, manyLines));
    measureEditor(files.ours, codes);
    fillUp(files.ours, manyLines);
    measureEditor(files.ours, codes);
    return benchmarkStatus();
}
