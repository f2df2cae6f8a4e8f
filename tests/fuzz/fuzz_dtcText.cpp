// Arbitrary lines of descriptions: what is read of them is written so that it reads the same again, and fits
// into the table. Input: a byte with the options, see optionsOf(), and the text.

#include "dtcdb/dtcText.h"
#include "fuzz/fuzzInput.h"
#include "shared/fileError.h"
#include "shared/textFile.h"
#include "support/temporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <sstream>

namespace zint {
namespace {

/// Whether the whole text is imported. This takes far longer than its lines alone, so few bytes ask for it.
bool isFile(unsigned bits) { return (bits & 0xE0) == 0x20; }

constexpr DtcTextOptions exact{.fields = DtcFields::csv};

DtcTextOptions optionsOf(unsigned bits)
{
    const bool isCsv = (bits & 0x07) == 0x07; // where nothing else says whether notes are separated
    return {.fields = isCsv ? DtcFields::csv : static_cast<DtcFields>(bits & 0x03),
            .delimNotes = (bits & 0x04) != 0,
            .dupOver = (bits & 0x08) != 0,
            .noNotes = (bits & 0x10) != 0};
}

void requireField(const std::string& text, std::ptrdiff_t mostCharacters)
{
    require(!text.empty(), "no field is empty");
    require(toUtf8(text) == text, "a field is valid UTF-8");
    require(std::ranges::count_if(text, [](char c) { return (c & 0xC0) != 0x80; }) <= mostCharacters,
            "a field is as long as the table takes it");
}

/// A record as the table gets it from a line.
DtcRecord readRecord(const std::string& line, const DtcTextOptions& options)
{
    const DtcRecord record = cutToSize(readDtcLine(line, options));
    const int fault = codeFault(record.code);
    require(fault >= 0 && fault <= DtcDatabase::codeSize, "a fault is in the code");
    require(fault != 0 || record.code.size() == DtcDatabase::codeSize, "a code is as long as all codes");
    requireField(record.code, static_cast<std::ptrdiff_t>(line.size()) + 1);
    requireField(record.description, DtcDatabase::descriptionSize);
    requireField(record.notes, DtcDatabase::notesSize);
    return record;
}

std::string writtenLine(const DtcRecord& record, const DtcTextOptions& options)
{
    const std::string line = dtcLine(record, options);
    require(line.find_first_of("\r\n") == std::string::npos, "a record is one line");
    return line;
}

/// Whether notes come back as notes. They need a separator of their own that the reader splits at, or begin
/// where a full description ends.
bool comesBack(const DtcTextOptions& options)
{
    return options.noNotes || options.fields == DtcFields::fixed ||
           options.delimNotes != (options.fields == DtcFields::space);
}

void checkLine(const std::string& line, const DtcTextOptions& options)
{
    const DtcRecord first = readRecord(line, options);
    if (codeFault(first.code) != 0)
        return;
    const DtcRecord once = readRecord(writtenLine(first, options), options);
    require(once.code == first.code, "a code survives being written");
    if (options.fields == DtcFields::tab && comesBack(options))
        require(once == first, "a record survives being written with tabs");
    if (comesBack(options))
        require(readRecord(writtenLine(once, options), options) == once,
                "what was written and read once stays as it is");
}

void checkLines(const std::string& text, const DtcTextOptions& options)
{
    std::istringstream stream(text);
    LineReader reader(stream);
    try {
        while (const auto line = reader.next())
            checkLine(*line, options);
    } catch (const FileError&) { // no text
    }
}

/// A database without records.
std::unique_ptr<DtcDatabase> freshDatabase(const std::string& path)
{
    std::filesystem::remove(path);
    return DtcDatabase::create(path);
}

/// @return nothing for a file that is no text
std::optional<DtcImport> import(DtcDatabase& database, const std::string& path, const DtcTextOptions& options)
{
    std::optional<DtcImport> counts;
    try {
        counts = importDtcText(database, path, options, unwatched);
        require(counts->lines == counts->added + counts->present + counts->skipped,
                "each line is counted once");
        require(counts->skipped >= static_cast<std::int64_t>(counts->firstSkipped.size()),
                "what is kept was skipped");
    } catch (const FileError&) {
    }
    require(database.count() == (counts ? counts->added : 0), "the table has what was added");
    return counts;
}

std::string exported(DtcDatabase& database)
{
    std::ostringstream stream;
    require(exportDtcText(database, stream, exact).count == database.count(), "all records are exported");
    return stream.str();
}

void checkFile(const std::string& text, const DtcTextOptions& options)
{
    static const TemporaryFolder folder;
    static const std::string textPath = folder.path("dtc.txt");
    static const std::string databasePath = folder.path("dtc.mdb");
    TemporaryFolder::write(textPath, text);
    auto database = freshDatabase(databasePath);
    if (!import(*database, textPath, options))
        return;
    const std::int64_t count = database->count();
    const std::string once = exported(*database);
    TemporaryFolder::write(textPath, once);
    database = freshDatabase(databasePath);
    const auto again = import(*database, textPath, exact);
    require(again && again->added == count, "what is exported can all be imported");
    require(exported(*database) == once, "what was exported comes back as it was");
}

} // namespace
} // namespace zint

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace zint;
    if (size == 0)
        return 0;
    const DtcTextOptions options = optionsOf(data[0]);
    const std::string text(asText(data + 1, size - 1));
    if (isFile(data[0]) || options.fields == DtcFields::csv)
        checkFile(text, options);
    else
        checkLines(text, options);
    return 0;
}
