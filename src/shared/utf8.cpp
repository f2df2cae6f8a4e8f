#include "shared/utf8.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace zint {
namespace {

// Unicode for the bytes 80 to 9F; a byte without a character there stands for itself.
constexpr std::array<char16_t, 32> windows1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

std::uint8_t byteAt(std::string_view text, std::size_t index)
{
    return index < text.size() ? static_cast<std::uint8_t>(text[index]) : 0;
}

/// How many bytes the UTF-8 character at the start of a text takes; 0 when there is no valid one.
std::size_t characterLength(std::string_view text)
{
    const std::uint8_t first = byteAt(text, 0);
    const std::uint8_t second = byteAt(text, 1);
    if (first < 0x80)
        return 1;
    std::size_t length = 0;
    if (first >= 0xC2 && first <= 0xDF)
        length = 2;
    else if (first >= 0xE0 && first <= 0xEF)
        length = 3;
    else if (first >= 0xF0 && first <= 0xF4)
        length = 4;
    const bool tooSmall = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    const bool outside = (first == 0xED && second > 0x9F) || (first == 0xF4 && second > 0x8F);
    if (tooSmall || outside)
        return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(text, i) & 0xC0) != 0x80)
            return 0;
    }
    return length;
}

bool isUtf8(std::string_view text)
{
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        if (length == 0)
            return false;
        text.remove_prefix(length);
    }
    return true;
}

void appendUtf8(std::string& text, char16_t character)
{
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0 | (character >> 6));
        text += static_cast<char>(0x80 | (character & 0x3F));
    } else {
        text += static_cast<char>(0xE0 | (character >> 12));
        text += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
        text += static_cast<char>(0x80 | (character & 0x3F));
    }
}

} // namespace

std::string toUtf8(std::string_view bytes)
{
    if (isUtf8(bytes))
        return std::string(bytes);
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<std::uint8_t>(c);
        appendUtf8(text, byte >= 0x80 && byte <= 0x9F ? windows1252[byte - 0x80U] : byte);
    }
    return text;
}

std::string_view firstCharacters(std::string_view text, std::size_t count)
{
    if (text.size() <= count) // usual, and quick
        return text;
    std::size_t length = 0;
    for (; count > 0 && length < text.size(); --count)
        length += std::max<std::size_t>(characterLength(text.substr(length)), 1);
    return text.substr(0, length);
}

} // namespace zint
