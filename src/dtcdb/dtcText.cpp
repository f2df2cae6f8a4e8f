#include "dtcdb/dtcText.h"

#include "shared/csvText.h"
#include "shared/module1.h"
#include "shared/utf8.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <optional>
#include <sstream>
#include <system_error>
#include <utility>

namespace zint {
namespace {

constexpr char blank = ' ';
constexpr std::string_view hexDigits = "0123456789ABCDEF";

std::string_view separatorOf(DtcFields fields)
{
    switch (fields) {
    case DtcFields::comma:
        return ",";
    case DtcFields::tab:
        return "\t";
    case DtcFields::space:
        return " ";
    case DtcFields::fixed:
    case DtcFields::csv:
        break;
    }
    return "";
}

using Pieces = std::vector<std::string_view>;

/// The fields of a line, as they stand in it.
Pieces split(std::string_view line, DtcFields fields)
{
    if (fields == DtcFields::fixed) {
        const std::string_view code = firstCharacters(line, DtcDatabase::codeSize);
        return {code, line.substr(code.size())};
    }
    const std::size_t most = fields == DtcFields::space ? 2 : 3;
    const std::string_view separator = separatorOf(fields);
    Pieces pieces;
    while (pieces.size() + 1 < most) {
        const auto end = line.find(separator);
        if (end == std::string_view::npos)
            break;
        pieces.push_back(line.substr(0, end));
        line.remove_prefix(end + separator.size());
    }
    pieces.push_back(line);
    return pieces;
}

std::string orBlank(std::string_view text) { return std::string(text.empty() ? " " : text); }

std::string_view withoutBlanksBehind(std::string_view text)
{
    return text.substr(0, text.find_last_not_of(blank) + 1);
}

std::string_view withoutBlanks(std::string_view text)
{
    return withoutBlanksBehind(text.substr(std::min(text.find_first_not_of(blank), text.size())));
}

/// @param pieces at least one
DtcRecord recordOf(const Pieces& pieces, const DtcTextOptions& options)
{
    std::string_view description = pieces.size() > 1 ? pieces[1] : std::string_view();
    const std::string_view kept = firstCharacters(description, DtcDatabase::descriptionSize);
    const std::string_view notes = pieces.size() > 2 ? pieces[2] : description.substr(kept.size());
    if (options.fields == DtcFields::fixed) // what fills the field up is no part of it
        description = withoutBlanksBehind(kept);
    return {.code = orBlank(pieces[0]),
            .description = orBlank(description),
            .notes = options.noNotes ? " " : orBlank(notes)};
}

/// The record of a spreadsheet's row; a field that is there and empty stays so.
DtcRecord recordOf(const std::vector<std::string>& row, bool noNotes)
{
    const Pieces pieces(row.begin(), row.end());
    DtcRecord record = recordOf(pieces, {.noNotes = noNotes});
    record.code = orBlank(withoutBlanks(row[0]));
    if (row.size() > 1 && row[1].empty())
        record.description.clear();
    if (row.size() > 2 && row[2].empty() && !noNotes)
        record.notes.clear();
    return record;
}

/// "Code" or "DTC" above the codes.
bool isHeading(std::string_view code, std::size_t line)
{
    return line == 1 && !withoutBlanks(code).empty() &&
           std::ranges::none_of(code, [](unsigned char c) { return std::isdigit(c) != 0; });
}

/// The records of a text file one after another.
class DtcReader {
public:
    DtcReader(std::istream& stream, const DtcTextOptions& options) : lines_(stream), options_(options) {}

    std::optional<DtcRecord> next(DtcImport& import)
    {
        if (options_.fields == DtcFields::csv)
            return nextRow(import);
        const auto line = lines_.next();
        if (!line)
            return std::nullopt;
        const DtcRecord record = readDtcLine(*line, options_);
        import.quoted += record.description.starts_with('"') || record.notes.starts_with('"') ? 1 : 0;
        return record;
    }

    /// Of the line that next() gave or failed at.
    std::size_t number() const
    {
        return options_.fields == DtcFields::csv ? rows_.number() : lines_.number();
    }

private:
    std::optional<DtcRecord> nextRow(DtcImport& import)
    {
        auto row = rows_.next();
        if (row && isHeading(row->front(), rows_.number()))
            row = rows_.next();
        if (!row)
            return std::nullopt;
        const bool isWide = std::any_of(row->begin() + std::min<std::ptrdiff_t>(std::ssize(*row), 3),
                                        row->end(), [](const std::string& field) { return !field.empty(); });
        import.wide += isWide ? 1 : 0;
        return recordOf(*row, options_.noNotes);
    }

    LineReader lines_;
    CsvReader rows_{lines_};
    DtcTextOptions options_;
};

std::string padded(const std::string& text, std::size_t width)
{
    const auto count = std::ranges::count_if(text, [](char c) { return (c & 0xC0) != 0x80; }); // characters
    const auto length = static_cast<std::size_t>(count);
    return length < width ? text + std::string(width - length, blank) : text;
}

/// A line must stay one, whatever the database holds.
std::string inOneLine(std::string text)
{
    std::ranges::replace_if(
        text, [](char c) { return c == '\r' || c == '\n'; }, blank);
    return text;
}

std::string csvLine(const DtcRecord& record, const DtcTextOptions& options)
{
    const std::string line = csvField(record.code) + "," + csvField(record.description);
    return options.noNotes ? line : line + "," + csvField(record.notes);
}

/// The record that an import makes of a line; nothing for a line that it skips or can't read.
std::optional<DtcRecord> importedFrom(const std::string& line, const DtcTextOptions& options)
{
    std::istringstream stream(line + "\n");
    DtcImport import;
    try {
        const auto record = DtcReader(stream, options).next(import);
        return record && codeFault(record->code) == 0 ? std::optional(cutToSize(*record)) : std::nullopt;
    } catch (const FileError&) {
        return std::nullopt;
    }
}

/// Whether an import finds the record in the line again. Blanks behind a text do not count, but in a
/// spreadsheet's file, which keeps them.
bool readsBack(const DtcRecord& record, const std::string& line, const DtcTextOptions& options)
{
    const auto again = importedFrom(line, options);
    const auto isSame = [&options](std::string_view one, std::string_view other) {
        return options.fields == DtcFields::csv ? one == other
                                                : withoutBlanksBehind(one) == withoutBlanksBehind(other);
    };
    return again && again->code == record.code && isSame(again->description, record.description) &&
           (options.noNotes || isSame(again->notes, record.notes));
}

/// What to do about a line that begins with a code and a separator of another form; empty for others.
std::string adviceOnForm(std::string_view line)
{
    constexpr std::array<std::pair<char, const char*>, 4> separators{
        {{';', "semicolons were taken as text: choose Spreadsheet CSV"},
         {',', "commas were taken as text: choose Comma"},
         {'\t', "tabs were taken as text: choose Tab"},
         {blank, "blanks were taken as text: choose Space"}}};
    const std::string_view code = line.substr(0, DtcDatabase::codeSize);
    if (line.size() == code.size() || codeFault(upperCase(code)) != 0)
        return {};
    const auto* const found =
        std::ranges::find(separators, line[code.size()], &std::pair<char, const char*>::first);
    return found == separators.end() ? std::string() : found->second;
}

/// Why a line is no record. @param code what stands where the code should
std::string whyNoRecord(const std::string& code, std::size_t number, DtcFields fields)
{
    constexpr std::size_t mostShown = 20;
    const std::string line = "Line " + std::to_string(number);
    const std::string bare(withoutBlanks(code));
    if (bare.empty())
        return line + ": no code at its beginning";
    if (codeFault(bare) == 0)
        return line + ": " + bare + ": a blank stands behind the code";
    if (codeFault(upperCase(bare)) == 0)
        return line + ": " + bare + ": use capitals";
    if (fields != DtcFields::csv && bare.front() == '"')
        return line + ": quotation marks were taken as text: choose Spreadsheet CSV";
    if (const std::string advice = adviceOnForm(bare); !advice.empty())
        return line + ": " + advice;
    if (isHeading(code, number))
        return line + " looks like a heading";
    return line + ": \"" + std::string(firstCharacters(code, mostShown)) + "\" is no code";
}

/// @param size of the stream; 0 when it is unknown
void tell(Progress& progress, std::istream& stream, std::uintmax_t size)
{
    const auto place = static_cast<double>(std::max<std::streamoff>(stream.tellg(), 0));
    progress.advance(size == 0 ? 0 : std::min(place / static_cast<double>(size), 1.0));
}

void importRecord(DtcDatabase& database, const DtcRecord& record, const DtcTextOptions& options,
                  DtcImport& import)
{
    if (database.add(record)) {
        ++import.added;
        return;
    }
    ++import.present;
    if (!options.dupOver)
        return;
    if (const auto old = database.find(record.code))
        database.update(*old, {.code = old->record.code,
                               .description = record.description,
                               .notes = options.noNotes ? old->record.notes : record.notes});
}

void importLine(DtcDatabase& database, const DtcRecord& record, std::size_t number,
                const DtcTextOptions& options, DtcImport& import)
{
    ++import.lines;
    if (codeFault(record.code) == 0) {
        importRecord(database, cutToSize(record), options, import);
        return;
    }
    ++import.skipped;
    if (import.firstSkipped.size() < DtcImport::mostKept)
        import.firstSkipped.push_back(whyNoRecord(record.code, number, options.fields));
}

} // namespace

int codeFault(std::string_view code)
{
    constexpr std::array<std::string_view, DtcDatabase::codeSize> allowed = {"PCBU", "0123", hexDigits,
                                                                             hexDigits, hexDigits};
    std::vector<std::string_view> characters;
    while (!code.empty()) {
        characters.push_back(firstCharacters(code, 1));
        code.remove_prefix(characters.back().size());
    }
    if (characters.size() < allowed.size())
        return static_cast<int>(characters.size()) + 1;
    if (characters.size() > allowed.size())
        return DtcDatabase::codeSize;
    for (std::size_t i = 0; i < allowed.size(); ++i) {
        if (characters[i].size() != 1 || allowed.at(i).find(characters[i]) == std::string_view::npos)
            return static_cast<int>(i) + 1;
    }
    return 0;
}

bool isMakersCode(std::string_view code)
{
    if (codeFault(code) != 0 || code[1] == '0')
        return false;
    if (code.front() == 'P') // of P3, the standard has the upper half
        return code[1] == '1' || (code[1] == '3' && code[2] < '4');
    return code[1] != '3';
}

DtcRecord readDtcLine(std::string_view line, const DtcTextOptions& options)
{
    line.remove_prefix(std::min(line.find_first_not_of(blank), line.size()));
    return recordOf(split(line, options.fields), options);
}

std::string dtcLine(const DtcRecord& record, const DtcTextOptions& options)
{
    if (options.fields == DtcFields::csv)
        return csvLine(record, options);
    const bool isFixed = options.fields == DtcFields::fixed;
    const std::string_view separator = separatorOf(options.fields);
    const bool hasNotes = !options.noNotes && (options.fields == DtcFields::comma || record.notes != " ");
    std::string line = isFixed ? padded(record.code, DtcDatabase::codeSize) : record.code;
    line += separator;
    line +=
        isFixed && hasNotes ? padded(record.description, DtcDatabase::descriptionSize) : record.description;
    if (hasNotes) {
        line += options.delimNotes ? separator : std::string_view();
        line += record.notes;
    }
    return inOneLine(line);
}

DtcImport importDtcText(DtcDatabase& database, const std::string& path, const DtcTextOptions& options,
                        Progress& progress)
{
    DtcImport import;
    database.inOneStep([&] {
        readFile(path, [&](std::istream& stream) {
            std::error_code unknown;
            const std::uintmax_t size = std::filesystem::file_size(utf8Path(path), unknown);
            DtcReader reader(stream, options);
            try {
                while (const auto record = reader.next(import)) {
                    importLine(database, *record, reader.number(), options, import);
                    if (import.lines % 1024 == 0)
                        tell(progress, stream, unknown ? 0 : size);
                }
            } catch (const FileError& error) {
                throw FileError("\"" + path + "\", line " + std::to_string(reader.number()) + ": " +
                                error.what());
            }
        });
    });
    return import;
}

DtcExport exportDtcText(DtcDatabase& database, std::ostream& stream, const DtcTextOptions& options,
                        std::string_view end)
{
    DtcExport done;
    if (options.fields == DtcFields::csv)
        stream << csvLine({.code = "Code", .description = "Description", .notes = "Notes"}, options) << end;
    for (auto entry = database.first(); entry; entry = database.after(entry->record.code)) {
        const std::string line = dtcLine(entry->record, options);
        stream << line << end;
        ++done.count;
        done.altered += readsBack(entry->record, line, options) ? 0 : 1;
    }
    return done;
}

DtcExport exportDtcFile(DtcDatabase& database, const std::string& path, const DtcTextOptions& options)
{
    std::error_code isNew;
    if (std::filesystem::equivalent(utf8Path(path), utf8Path(database.path()), isNew))
        throw FileError("\"" + path + "\" is the database; give the text file another name");
    DtcExport done;
    replaceFile(path, [&](std::ostream& stream) {
        if (options.fields == DtcFields::csv)
            stream << byteOrderMark; // or spreadsheets take the text for another character set
        done = exportDtcText(database, stream, options);
    });
    return done;
}

DtcImport setUpDtcDatabase(const std::string& databasePath, const std::string& textPath, Progress& progress)
{
    DtcImport import;
    DtcDatabase::create(databasePath, [&](DtcDatabase& database) {
        import = importDtcText(database, textPath, {}, progress);
    });
    return import;
}

std::string importText(const DtcImport& import, bool dupOver)
{
    return std::to_string(import.added) + " DTC('s) add, " + std::to_string(import.skipped) + " skip, " +
           std::to_string(import.present) + (dupOver ? "upd, " : "dup, ") + std::to_string(import.lines) +
           " total";
}

std::string exportText(const DtcExport& done) { return std::to_string(done.count) + " DTC('s) exported"; }

std::string importHint(const DtcImport& import)
{
    if (import.quoted > 0)
        return std::to_string(import.quoted) +
               " line(s): quotation marks were taken as text: choose Spreadsheet CSV";
    if (import.wide > 0)
        return std::to_string(import.wide) + " row(s) have more than three columns; the others were left out";
    return {};
}

std::string exportHint(const DtcExport& done)
{
    if (done.altered == 0)
        return {};
    return std::to_string(done.altered) +
           " record(s) will not read back as they are (separators in texts, or notes "
           "without one before them): Spreadsheet CSV keeps them";
}

std::vector<std::string> skippedTexts(const DtcImport& import)
{
    std::vector<std::string> texts = import.firstSkipped;
    if (const auto rest = import.skipped - std::ssize(texts); rest > 0)
        texts.push_back("and " + std::to_string(rest) + " more");
    return texts;
}

} // namespace zint
