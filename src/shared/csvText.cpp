#include "shared/csvText.h"

namespace zint {
namespace {

constexpr char quote = '"';

} // namespace

std::string csvField(std::string_view text)
{
    const bool isPlain = text.find_first_of(",;\"\r\n") == std::string_view::npos && !text.starts_with(' ') &&
                         !text.ends_with(' ');
    if (isPlain)
        return std::string(text);
    std::string field(1, quote);
    for (const char c : text)
        field.append(c == quote ? 2 : 1, c);
    return field + quote;
}

std::optional<std::vector<std::string>> CsvReader::next()
{
    number_ = lines_.number() + 1;
    fields_.assign(1, {});
    place_ = Place::plain;
    size_ = 0;
    auto line = lines_.next();
    if (!line)
        return std::nullopt;
    take(*line);
    while (place_ == Place::quoted) {
        line = lines_.next();
        if (!line)
            throw FileError("a quotation mark is not closed");
        take('\n');
        take(*line);
    }
    return fields_;
}

void CsvReader::take(std::string_view line)
{
    size_ += line.size();
    if (size_ > LineReader::longestLine)
        throw FileError("a quotation mark is not closed, or a row is longer than " +
                        std::to_string(LineReader::longestLine) + " characters");
    for (const char c : line)
        take(c);
}

void CsvReader::take(char c)
{
    std::string& field = fields_.back();
    if (place_ == Place::quoted) {
        if (c == quote)
            place_ = Place::closed;
        else
            field += c;
    } else if (c == quote && place_ == Place::closed) { // it was doubled
        field += quote;
        place_ = Place::quoted;
    } else if (c == quote && field.find_first_not_of(' ') == std::string::npos) {
        field.clear(); // blanks before the quotation mark are no part of the field
        place_ = Place::quoted;
    } else if (isSeparator(c)) {
        fields_.emplace_back();
        place_ = Place::plain;
    } else if (place_ == Place::plain) {
        field += c;
    } else if (c != ' ') {
        throw FileError(
            "text follows a closing quotation mark; within quoted text a quotation mark is doubled");
    }
}

bool CsvReader::isSeparator(char c)
{
    if (separator_ == 0 && (c == ',' || c == ';'))
        separator_ = c;
    return c == separator_;
}

} // namespace zint
