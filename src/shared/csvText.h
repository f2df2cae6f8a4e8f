#pragma once

#include "shared/textFile.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Text as spreadsheets write it: fields between commas or semicolons, in quotation marks where they hold
/// such, a line end or a quotation mark, which is doubled then.
namespace zint {

/// The field as it stands in a line; text that would be read otherwise is put into quotation marks.
std::string csvField(std::string_view text);

/// Reads the rows of a stream.
class CsvReader {
public:
    /// @param lines outlives this. @param separator where it is known; 0: the first one in the stream tells
    explicit CsvReader(LineReader& lines, char separator = 0) : lines_(lines), separator_(separator) {}

    /// The fields of the next row, at least one; nothing at the end of the stream. A line end within
    /// quotation marks is a line feed.
    /// @throws FileError as LineReader::next(), and for quotation marks that do not match
    std::optional<std::vector<std::string>> next();

    /// The number, from 1, of the line in which the row that next() gave or failed at begins.
    std::size_t number() const { return number_; }

private:
    void take(std::string_view line);
    void take(char c);
    bool isSeparator(char c);

    /// Where in a field the reader is.
    enum class Place { plain, quoted, closed };

    LineReader& lines_;
    std::size_t number_ = 0;
    char separator_; ///< 0: not known yet
    Place place_ = Place::plain;
    std::vector<std::string> fields_;
    std::size_t size_ = 0; ///< of the row
};

} // namespace zint
