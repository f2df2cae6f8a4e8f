#pragma once

#include "catalogue/ownParameter.h"
#include "shared/textFile.h"

#include <array>
#include <cstddef>
#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zint {

/// The columns in their usual order.
enum class CsvColumn { name, shortName, request, formula, minimum, maximum, unit, header };

inline constexpr std::size_t csvColumnCount = 8;
inline constexpr std::array<const char*, csvColumnCount> csvColumnNames = {
    "Name", "ShortName", "ModeAndPID", "Equation", "Min Value", "Max Value", "Units", "Header"};

/// Whether a line is none of the table: "#" and "//" begin a comment, but "#1 cylinder" is a name; "sep=;" is
/// for spreadsheets.
bool isCsvComment(std::string_view line);

/// A line that is no parameter.
struct CsvRefusal {
    std::string name; ///< what stands in the name's column
    std::string why;
};

/// Reads the lines of a file one after another. Each stands alone: a fault in one leaves the others.
class CsvParameterReader {
public:
    /// @param stream outlives this
    explicit CsvParameterReader(std::istream& stream) : lines_(stream) {}

    using Line = std::variant<OwnParameter, CsvRefusal>;

    /// The next line that is neither empty nor a comment nor the head; nothing at the end, and behind a
    /// refusal that concerns the whole file.
    std::optional<Line> next();

    /// Of the line that next() gave.
    std::size_t number() const { return lines_.number(); }

private:
    using Fields = std::vector<std::string>;

    std::optional<std::string> nextLine();
    bool takesHead(const std::string& line);
    void takePlaces(const Fields& names);
    Line read(const std::string& line) const;
    OwnParameter parameterOf(const Fields& fields) const;
    Fields fitted(Fields fields) const;
    const std::string& field(const Fields& fields, CsvColumn column) const;
    double numberIn(const Fields& fields, CsvColumn column) const;

    LineReader lines_;
    char separator_ = 0;                                                     ///< 0: the head has not come yet
    std::array<std::size_t, csvColumnCount> places_{0, 1, 2, 3, 4, 5, 6, 7}; ///< of the columns
    std::size_t width_ = csvColumnCount;                                     ///< of the head, in columns
    bool isOver_ = false;
};

} // namespace zint
