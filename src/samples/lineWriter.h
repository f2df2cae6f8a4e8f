#pragma once

#include "shared/textFile.h"

#include <array>
#include <charconv>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>

namespace zint {

/// Adds a number to a text.
template <std::integral Number>
std::string& appendNumber(std::string& text, Number number)
{
    std::array<char, 24> digits; // NOLINT(cppcoreguidelines-pro-type-member-init): to_chars fills it
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    return text.append(digits.data(), result.ptr);
}

/// The same for any finite number: as few digits as give the number again, none of them behind a whole one.
inline std::string& appendNumber(std::string& text, double number)
{
    constexpr double exact = 1LL << 53; // up to here a double tells whole numbers apart
    if (number > -exact && number < exact && number == std::trunc(number))
        return appendNumber(text, static_cast<std::int64_t>(number));
    std::array<char, 32> digits; // NOLINT(cppcoreguidelines-pro-type-member-init): to_chars fills it
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    return text.append(digits.data(), result.ptr);
}

/// Writes lines to a stream, which gets them in large pieces: a run may have millions of them.
class LineWriter {
public:
    explicit LineWriter(std::ostream& stream) : stream_(stream) {}

    LineWriter& operator<<(std::string_view words)
    {
        text_ += words;
        return *this;
    }
    LineWriter& operator<<(char character)
    {
        text_ += character;
        return *this;
    }
    template <typename Number>
    requires std::is_arithmetic_v<Number> LineWriter& operator<<(Number number)
    {
        appendNumber(text_, number);
        return *this;
    }

    /// For whatever appends to a text.
    std::string& text() { return text_; }

    void endLine()
    {
        text_ += lineEnd;
        if (text_.size() >= pieceSize)
            flush();
    }

    /// Hands over what is left; to be called at the end.
    void flush()
    {
        stream_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
        text_.clear();
    }

private:
    static constexpr std::size_t pieceSize = 65536;

    std::ostream& stream_;
    std::string text_;
};

} // namespace zint
