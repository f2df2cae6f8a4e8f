#include "dtcdb/dtcText.h"

#include "shared/module1.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>

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
        break;
    }
    return "";
}

/// The fields of a line, as they stand in it.
std::vector<std::string_view> split(std::string_view line, DtcFields fields)
{
    if (fields == DtcFields::fixed) {
        const std::string_view code = firstCharacters(line, DtcDatabase::codeSize);
        return {code, line.substr(code.size())};
    }
    const std::size_t most = fields == DtcFields::space ? 2 : 3;
    const std::string_view separator = separatorOf(fields);
    std::vector<std::string_view> pieces;
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

/// @param size of the stream; 0 when it is unknown
void tell(Progress& progress, std::istream& stream, std::uintmax_t size)
{
    const auto place = static_cast<double>(std::max<std::streamoff>(stream.tellg(), 0));
    progress.advance(size == 0 ? 0 : std::min(place / static_cast<double>(size), 1.0));
}

void importLine(DtcDatabase& database, const std::string& line, std::size_t number,
                const DtcTextOptions& options, DtcImport& import)
{
    ++import.lines;
    const DtcRecord record = cutToSize(readDtcLine(line, options));
    if (codeFault(record.code) != 0) {
        ++import.skipped;
        if (import.firstSkipped.size() < DtcImport::mostKept)
            import.firstSkipped.push_back({number, std::string(firstCharacters(record.code, 20))});
        return;
    }
    if (database.add(record)) {
        ++import.added;
        return;
    }
    ++import.present;
    if (!options.dupOver)
        return;
    if (const auto old = database.find(record.code))
        database.update(old->key, {.code = old->record.code,
                                   .description = record.description,
                                   .notes = options.noNotes ? old->record.notes : record.notes});
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

DtcRecord readDtcLine(std::string_view line, const DtcTextOptions& options)
{
    line.remove_prefix(std::min(line.find_first_not_of(blank), line.size()));
    const std::vector<std::string_view> pieces = split(line, options.fields);
    std::string_view description = pieces.size() > 1 ? pieces[1] : std::string_view();
    const std::string_view kept = firstCharacters(description, DtcDatabase::descriptionSize);
    const std::string_view notes = pieces.size() > 2 ? pieces[2] : description.substr(kept.size());
    if (options.fields == DtcFields::fixed) // what fills the field up is no part of it
        description = kept.substr(0, kept.find_last_not_of(blank) + 1);
    return {.code = orBlank(pieces[0]),
            .description = orBlank(description),
            .notes = options.noNotes ? " " : orBlank(notes)};
}

std::string dtcLine(const DtcRecord& record, const DtcTextOptions& options)
{
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
            LineReader reader(stream);
            try {
                while (const auto line = reader.next()) {
                    importLine(database, *line, reader.number(), options, import);
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

std::int64_t exportDtcText(DtcDatabase& database, const std::string& path, const DtcTextOptions& options)
{
    std::error_code isNew;
    if (std::filesystem::equivalent(utf8Path(path), utf8Path(database.path()), isNew))
        throw FileError("\"" + path + "\" is the database; give the text file another name");
    std::int64_t count = 0;
    replaceFile(path, [&](std::ostream& stream) { count = exportDtcText(database, stream, options); });
    return count;
}

std::int64_t exportDtcText(DtcDatabase& database, std::ostream& stream, const DtcTextOptions& options,
                           std::string_view end)
{
    std::int64_t count = 0;
    for (auto entry = database.first(); entry; entry = database.after(entry->record.code)) {
        stream << dtcLine(entry->record, options) << end;
        ++count;
    }
    return count;
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

std::string exportText(std::int64_t count) { return std::to_string(count) + " DTC('s) exported"; }

std::vector<std::string> skippedTexts(const DtcImport& import)
{
    std::vector<std::string> texts;
    for (const DtcImport::Skipped& line : import.firstSkipped)
        texts.push_back("Line " + std::to_string(line.line) + ": \"" + line.code + "\" is no code");
    if (const auto rest = import.skipped - static_cast<std::int64_t>(import.firstSkipped.size()); rest > 0)
        texts.push_back("and " + std::to_string(rest) + " more");
    return texts;
}

} // namespace zint
