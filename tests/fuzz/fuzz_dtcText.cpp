// Arbitrary files of descriptions: what an import takes fits into the table, and what is exported of it as a
// spreadsheet or line by line reads the same again. Input: a byte with the options, see optionsOf(), and the
// text.

#include "dtcdb/dtcText.h"
#include "fuzz/fuzzInput.h"
#include "shared/fileError.h"
#include "shared/textFile.h"
#include "support/temporaryFolder.h"

#include <sstream>

namespace zint {
namespace {

DtcTextOptions optionsOf(unsigned bits)
{
    const bool isCsv = (bits & 0x07) == 0x07; // where nothing else says whether notes are separated
    return {.fields = isCsv ? DtcFields::csv : static_cast<DtcFields>(bits & 0x03),
            .delimNotes = (bits & 0x04) != 0,
            .dupOver = (bits & 0x08) != 0,
            .noNotes = (bits & 0x10) != 0};
}

/// A database of what a text holds; empty when it is no text.
std::unique_ptr<DtcDatabase> imported(const std::string& path, const std::string& text,
                                      const DtcTextOptions& options)
{
    TemporaryFolder::write(path, text);
    return DtcDatabase::createInMemory([&](DtcDatabase& database) {
        try {
            const DtcImport import = importDtcText(database, path, options, unwatched);
            require(import.lines == import.added + import.present + import.skipped,
                    "each line is counted once");
            require(database.count() == import.added, "the table has what was added");
        } catch (const FileError&) { // no text; what was read before stays here
        }
    });
}

std::string exported(DtcDatabase& database, const DtcTextOptions& options)
{
    std::ostringstream stream;
    require(exportDtcText(database, stream, options).count == database.count(), "all records are exported");
    return stream.str();
}

void checkRecord(const DtcRecord& record, const DtcTextOptions& options)
{
    require(codeFault(record.code) == 0 && cutToSize(record) == record, "a record is as the table takes it");
    const std::string line = dtcLine(record, options);
    if (options.fields == DtcFields::csv)
        return;
    require(line.find_first_of("\r\n") == std::string::npos, "a record is one line");
    const DtcRecord once = cutToSize(readDtcLine(line, options));
    require(once.code == record.code, "a code survives being written");
    if (options.fields == DtcFields::tab && options.delimNotes && !options.noNotes)
        require(once == record, "a record survives being written with tabs");
}

/// Takes far less time than a file.
void checkLines(const std::string& text, const DtcTextOptions& options)
{
    std::istringstream stream(text);
    LineReader reader(stream);
    try {
        while (const auto line = reader.next()) {
            const DtcRecord record = cutToSize(readDtcLine(*line, options));
            if (codeFault(record.code) == 0)
                checkRecord(record, options);
        }
    } catch (const FileError&) { // no text
    }
}

void checkFile(const std::string& text, const DtcTextOptions& options)
{
    static const TemporaryFolder folder;
    static const std::string path = folder.path("dtc.txt");
    constexpr DtcTextOptions exact{.fields = DtcFields::csv};
    const auto database = imported(path, text, options);
    for (auto entry = database->first(); entry; entry = database->after(entry->record.code))
        checkRecord(entry->record, options);
    const std::string once = exported(*database, exact);
    require(exported(*imported(path, once, exact), exact) == once, "what was exported comes back as it was");
}

} // namespace

void fuzz(std::string_view input)
{
    if (input.empty())
        return;
    const DtcTextOptions options = optionsOf(byteAt(input, 0));
    const bool isFile = options.fields == DtcFields::csv || (byteAt(input, 0) & 0xE0) == 0x20;
    (isFile ? checkFile : checkLines)(std::string(input.substr(1)), options);
}

} // namespace zint
