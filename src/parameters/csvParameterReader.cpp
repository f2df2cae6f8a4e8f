#include "parameters/csvParameterReader.h"

#include "parameters/formulaText.h"
#include "shared/csvText.h"
#include "shared/fileError.h"
#include "shared/module1.h"

#include <algorithm>
#include <charconv>
#include <sstream>
#include <system_error>
#include <utility>

namespace zint {
namespace {

using Fields = std::vector<std::string>;

constexpr std::string_view blanks = " \t";
constexpr std::string_view minusSign = "\xE2\x88\x92";
constexpr std::size_t noColumn = std::string::npos;

struct ColumnName {
    std::string_view letters; ///< capitals alone
    CsvColumn column;
};

constexpr std::array columnNames = {
    ColumnName{"NAME", CsvColumn::name},
    ColumnName{"LONGNAME", CsvColumn::name},
    ColumnName{"SHORTNAME", CsvColumn::shortName},
    ColumnName{"MODEANDPID", CsvColumn::request},
    ColumnName{"MODEPID", CsvColumn::request},
    ColumnName{"PID", CsvColumn::request},
    ColumnName{"OBDMODEANDPID", CsvColumn::request},
    ColumnName{"EQUATION", CsvColumn::formula},
    ColumnName{"FORMULA", CsvColumn::formula},
    ColumnName{"MINVALUE", CsvColumn::minimum},
    ColumnName{"MIN", CsvColumn::minimum},
    ColumnName{"MINIMUM", CsvColumn::minimum},
    ColumnName{"MAXVALUE", CsvColumn::maximum},
    ColumnName{"MAX", CsvColumn::maximum},
    ColumnName{"MAXIMUM", CsvColumn::maximum},
    ColumnName{"UNITS", CsvColumn::unit},
    ColumnName{"UNIT", CsvColumn::unit},
    ColumnName{"HEADER", CsvColumn::header},
    ColumnName{"OBDHEADER", CsvColumn::header},
};

std::string lettersOf(std::string_view text)
{
    std::string letters = upperCase(text);
    std::erase_if(letters, [](char c) { return c < 'A' || c > 'Z'; });
    return letters;
}

std::optional<CsvColumn> columnOf(std::string_view text)
{
    const auto* const row = std::ranges::find(columnNames, lettersOf(text), &ColumnName::letters);
    return row == columnNames.end() ? std::nullopt : std::optional(row->column);
}

/// @throws FileError for quotation marks that do not match
Fields fieldsOf(const std::string& line, char separator)
{
    std::istringstream stream("\n" + line); // at the beginning, the reader would drop a byte order mark
    LineReader lines(stream);
    CsvReader rows(lines, separator);
    rows.next();
    Fields fields = rows.next().value_or(Fields{""});
    for (std::string& field : fields)
        field = std::string(trimmed(field, blanks));
    return fields;
}

/// The same; nothing for a line that another separator must part.
Fields fieldsIfAny(const std::string& line, char separator)
{
    try {
        return fieldsOf(line, separator);
    } catch (const FileError&) {
        return {};
    }
}

std::size_t knownColumns(const Fields& fields)
{
    const auto isKnown = [](const std::string& field) { return columnOf(field).has_value(); };
    return static_cast<std::size_t>(std::ranges::count_if(fields, isKnown));
}

/// "1,5" as "1.5", and "1,000" as "1000" where commas part the fields: there they are an English program's.
std::string withPoint(std::string text, bool hasCommas)
{
    const std::size_t comma = text.find(',');
    if (comma == std::string::npos)
        return text;
    if (hasCommas && text.size() == comma + 4)
        text.erase(comma, 1);
    else
        text[comma] = '.';
    return text;
}

/// Puts points into a formula with decimal commas, in which semicolons part what functions take.
std::string withPoints(std::string formula)
{
    const auto isDigit = [&](std::size_t place) {
        return place < formula.size() && formula[place] >= '0' && formula[place] <= '9';
    };
    for (std::size_t i = 0; i < formula.size(); ++i) {
        if (formula[i] == ',' && i > 0 && isDigit(i - 1) && isDigit(i + 1))
            formula[i] = '.';
        else if (formula[i] == ';')
            formula[i] = ',';
    }
    return formula;
}

bool canBeComputed(const std::string& formula) { return !readFormula(formula).fault; }

/// The formula without what spreadsheets and other languages put into it, if it can be computed then.
std::string formulaIn(const std::string& typed)
{
    std::string formula(trimmed(typed, " \t\""));
    if (formula.starts_with('=')) // as spreadsheets begin theirs
        formula.erase(0, 1);
    if (canBeComputed(formula))
        return formula;
    std::string pointed = withPoints(formula);
    return canBeComputed(pointed) ? pointed : formula;
}

/// The usual header has many names.
std::string headerOf(const std::string& typed)
{
    constexpr std::array<std::string_view, 5> usual = {"AUTO", "DEFAULT", "NONE", "-", "\"\""};
    return std::ranges::find(usual, upperCase(typed)) == usual.end() ? typed : std::string();
}

} // namespace

bool isCsvComment(std::string_view line)
{
    const bool isNumbered = line.size() > 1 && line[1] >= '0' && line[1] <= '9';
    return line.starts_with("//") || (line.starts_with('#') && !isNumbered) ||
           upperCase(line).starts_with("SEP=");
}

std::optional<std::string> CsvParameterReader::nextLine()
{
    while (auto line = lines_.next()) {
        const std::string_view text = trimmed(*line, " \t,;");
        if (!text.empty() && !isCsvComment(trimmed(*line, blanks)))
            return line;
    }
    return std::nullopt;
}

/// The separator is the one that parts the most names of columns; without any name, the most fields.
/// @throws FileError for a head without the columns that are needed
bool CsvParameterReader::takesHead(const std::string& line)
{
    std::pair<std::size_t, std::size_t> most{0, 2};
    Fields names;
    for (const char separator : {',', ';', '\t'}) {
        Fields fields = fieldsIfAny(line, separator);
        const std::pair count{knownColumns(fields), fields.size()};
        if (count <= most)
            continue;
        most = count;
        names = std::move(fields);
        separator_ = separator;
    }
    if (most.first < 2)
        return false;
    takePlaces(names);
    return true;
}

void CsvParameterReader::takePlaces(const Fields& names)
{
    places_.fill(noColumn);
    width_ = names.size();
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto column = columnOf(names[i]);
        if (column && places_.at(static_cast<std::size_t>(*column)) == noColumn)
            places_.at(static_cast<std::size_t>(*column)) = i;
    }
    for (const CsvColumn needed : {CsvColumn::name, CsvColumn::request, CsvColumn::formula}) {
        const auto place = static_cast<std::size_t>(needed);
        if (places_.at(place) == noColumn)
            throw FileError("the head has no column " + std::string(csvColumnNames.at(place)));
    }
}

std::optional<CsvParameterReader::Line> CsvParameterReader::next()
{
    if (isOver_)
        return std::nullopt;
    try {
        auto line = nextLine();
        if (line && separator_ == 0 && takesHead(*line))
            line = nextLine();
        if (!line)
            return std::nullopt;
        return read(*line);
    } catch (const FileError& error) { // the file itself can't be read on
        isOver_ = true;
        return CsvRefusal{.name = {}, .why = error.what()};
    }
}

CsvParameterReader::Line CsvParameterReader::read(const std::string& line) const
{
    Fields fields;
    try {
        fields = fieldsOf(line, separator_ == 0 ? ',' : separator_);
        return parameterOf(fitted(fields));
    } catch (const FileError& error) {
        return CsvRefusal{.name = fields.empty() ? std::string() : field(fields, CsvColumn::name),
                          .why = error.what()};
    }
}

/// A formula with commas may stand without quotation marks: what is too much belongs to it if it can be
/// computed then.
CsvParameterReader::Fields CsvParameterReader::fitted(Fields fields) const
{
    while (fields.size() > width_ && fields.back().empty())
        fields.pop_back();
    const std::size_t place = places_.at(static_cast<std::size_t>(CsvColumn::formula));
    if (fields.size() <= width_ || place >= fields.size())
        return fields;
    const std::size_t extra = fields.size() - width_;
    std::string joined = fields[place];
    for (std::size_t i = place + 1; i <= place + extra; ++i)
        joined += separator_ + fields[i];
    if (!canBeComputed(formulaIn(joined)))
        throw FileError("it has more columns than the head; texts with commas need quotation marks");
    fields[place] = joined;
    const auto begin = fields.begin() + static_cast<std::ptrdiff_t>(place) + 1;
    fields.erase(begin, begin + static_cast<std::ptrdiff_t>(extra));
    return fields;
}

OwnParameter CsvParameterReader::parameterOf(const Fields& fields) const
{
    return {.name = field(fields, CsvColumn::name),
            .shortName = field(fields, CsvColumn::shortName),
            .request = field(fields, CsvColumn::request),
            .header = headerOf(field(fields, CsvColumn::header)),
            .formula = formulaIn(field(fields, CsvColumn::formula)),
            .unit = field(fields, CsvColumn::unit),
            .minimum = numberIn(fields, CsvColumn::minimum),
            .maximum = numberIn(fields, CsvColumn::maximum)};
}

const std::string& CsvParameterReader::field(const Fields& fields, CsvColumn column) const
{
    static const std::string none;
    const std::size_t place = places_.at(static_cast<std::size_t>(column));
    return place < fields.size() ? fields[place] : none;
}

/// @throws FileError for what is no number
double CsvParameterReader::numberIn(const Fields& fields, CsvColumn column) const
{
    std::string text = field(fields, column);
    if (text.starts_with(minusSign))
        text.replace(0, minusSign.size(), "-");
    if (text.empty() || text == "-")
        return 0;
    text = withPoint(text, separator_ == ',');
    double number = 0;
    const char* const begin = text.data() + (text.starts_with('+') ? 1 : 0);
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(begin, end, number);
    if (error != std::errc() || stop != end)
        throw FileError("\"" + field(fields, column) + "\" is no number");
    return number;
}

} // namespace zint
