#pragma once

#include "dtcdb/dtcDatabase.h"
#include "shared/progress.h"
#include "shared/textFile.h"

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

/// Text files of descriptions, by which they are exchanged with other sources: a line holds code, description
/// and notes.
namespace zint {

/// What is wrong with a code: "P", "C", "B" or "U", a digit up to 3, and three digits in hexadecimal; all in
/// capitals.
/// @return the place, from 1, of the first character that is wrong, missing or too much; 0 for a code
int codeFault(std::string_view code);

/// Whether each maker of vehicles says what the code means, as opposed to the standard.
bool isMakersCode(std::string_view code);

/// How fields follow each other in a line.
enum class DtcFields {
    comma,
    tab,
    space, ///< all behind the first blank is the description
    fixed, ///< each field is as wide as it can be in the database
    csv    ///< as spreadsheets write it, with a heading; all that a record holds comes back
};

/// How a text file is read or written.
struct DtcTextOptions {
    DtcFields fields = DtcFields::comma;
    bool delimNotes = false; ///< export: a separator stands before the notes
    bool dupOver = false;    ///< import: a code that the table has gets the description and notes of the file
    bool noNotes = false;    ///< notes are neither read nor written
};

/// The fields of a line of any form but csv. They may be longer than the database takes, and the code may be
/// wrong; a field that is missing is one blank.
DtcRecord readDtcLine(std::string_view line, const DtcTextOptions& options);

/// A line of any form without its end.
std::string dtcLine(const DtcRecord& record, const DtcTextOptions& options);

/// What came of an import.
struct DtcImport {
    static constexpr std::size_t mostKept = 1000;

    std::int64_t lines = 0;
    std::int64_t skipped = 0;
    std::int64_t added = 0;
    std::int64_t present = 0;              ///< the table had the code; overwritten if that was asked for
    std::vector<std::string> firstSkipped; ///< why lines are no records; at most mostKept
    std::int64_t quoted = 0;               ///< texts that were taken with their quotation marks
    std::int64_t wide = 0;                 ///< rows of a spreadsheet whose further columns were left out
};

/// What came of an export.
struct DtcExport {
    std::int64_t count = 0;
    std::int64_t altered = 0; ///< records that an import of the same form reads otherwise
};

/// Reads a file into the table, all of it or nothing.
/// @throws FileError when the file can't be read, DatabaseError when the table can't be written, WorkStopped
DtcImport importDtcText(DtcDatabase& database, const std::string& path, const DtcTextOptions& options,
                        Progress& progress);

/// Writes the table to a stream. @param end of each line
/// @throws DatabaseError when the table can't be read
DtcExport exportDtcText(DtcDatabase& database, std::ostream& stream, const DtcTextOptions& options,
                        std::string_view end = lineEnd);

/// Writes the table into a file, which it replaces in one step.
/// @throws FileError when the file can't be written, DatabaseError when the table can't be read
DtcExport exportDtcFile(DtcDatabase& database, const std::string& path, const DtcTextOptions& options);

/// Makes a database of a file in which fields are separated by commas. Nothing is left when it fails.
/// @throws as DtcDatabase::create() and importDtcText()
DtcImport setUpDtcDatabase(const std::string& databasePath, const std::string& textPath, Progress& progress);

/// What the status tells of an import and of an export.
std::string importText(const DtcImport& import, bool dupOver);
std::string exportText(const DtcExport& done);

/// What the user had better know of them; empty: nothing.
std::string importHint(const DtcImport& import);
std::string exportHint(const DtcExport& done);

/// What there is to say of each line that an import has skipped; the last one stands for those that were not
/// kept.
std::vector<std::string> skippedTexts(const DtcImport& import);

} // namespace zint
