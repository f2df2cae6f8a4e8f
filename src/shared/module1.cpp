#include "shared/module1.h"

#include "shared/runTimeError.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <limits>
#include <system_error>

namespace zint {
namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";

constexpr std::array<std::string_view, 16> reversedBits = {
    "0000", "1000", "0100", "1100", "0010", "1010", "0110", "1110",
    "0001", "1001", "0101", "1101", "0011", "1011", "0111", "1111",
};

char capital(char letter)
{
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

constexpr std::int64_t largestNumber = std::numeric_limits<std::int32_t>::max();

/// @return -1 for what is no hexadecimal number; some number above the largest for all that are
std::int64_t hexValue(std::string_view text)
{
    if (text.empty())
        return -1;
    std::int64_t value = 0;
    for (const char character : text) {
        if (character == ' ')
            continue;
        const int digit = upperHexDigit(capital(character));
        if (digit < 0)
            return -1;
        value = value * 16 + digit;
        if (value > largestNumber)
            break;
    }
    return value;
}

std::errc readInteger(std::string_view text, std::int32_t& value)
{
    text = trimmed(text);
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && stop != end ? std::errc::invalid_argument : error;
}

} // namespace

std::string upperCase(std::string_view text)
{
    std::string upper(text);
    std::ranges::transform(upper, upper.begin(), capital);
    return upper;
}

std::string_view trimmed(std::string_view text, std::string_view blanks)
{
    const auto first = std::min(text.find_first_not_of(blanks), text.size());
    return text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

int upperHexDigit(char character)
{
    if (character >= '0' && character <= '9')
        return character - '0';
    return character >= 'A' && character <= 'F' ? character - 'A' + 10 : -1;
}

std::optional<std::int32_t> hexIn(std::string_view text)
{
    const std::int64_t value = hexValue(text);
    if (value < 0 || value > largestNumber)
        return std::nullopt;
    return static_cast<std::int32_t>(value);
}

std::int32_t hexToNumber(std::string_view text)
{
    const std::int64_t value = hexValue(text);
    if (value > largestNumber)
        throw RunTimeError::overflow();
    return static_cast<std::int32_t>(value);
}

std::string hexText(std::int32_t number, std::size_t fewestDigits)
{
    std::string text;
    for (auto rest = static_cast<std::uint32_t>(number); rest > 0; rest /= 16)
        text += hexDigits[rest % 16];
    text.resize(std::max(text.size(), fewestDigits), '0');
    std::ranges::reverse(text);
    return text;
}

std::string hexToBits(std::string_view text)
{
    std::string bits;
    for (const char character : text) {
        if (character == ' ')
            continue;
        const int digit = upperHexDigit(character);
        if (digit < 0)
            return {};
        bits += reversedBits[static_cast<std::size_t>(digit)];
    }
    return bits;
}

int lastBackslash(std::string_view text)
{
    return static_cast<int>(text.rfind('\\') + 1); // 0 when there is none
}

std::string fileNamePart(std::string_view path)
{
    return std::string(path.substr(path.find_last_of("\\/") + 1));
}

std::filesystem::path utf8Path(std::string_view path) { return {std::u8string(path.begin(), path.end())}; }

std::string utf8Text(const std::filesystem::path& path)
{
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

bool fileExists(const std::string& path) noexcept
{
    try {
        std::error_code ignored;
        return std::filesystem::is_regular_file(utf8Path(path), ignored);
    } catch (const std::exception&) {
        return false;
    }
}

std::string_view textAt(std::string_view text, std::size_t position, std::size_t count)
{
    return position > text.size() ? std::string_view() : text.substr(position - 1, count);
}

std::optional<std::int32_t> integerIn(std::string_view text)
{
    std::int32_t value = 0;
    return readInteger(text, value) == std::errc() ? std::optional(value) : std::nullopt;
}

std::int32_t toInteger(std::string_view text)
{
    std::int32_t value = 0;
    const std::errc error = readInteger(text, value);
    if (error == std::errc())
        return value;
    throw error == std::errc::result_out_of_range ? RunTimeError::overflow() : RunTimeError::typeMismatch();
}

std::string rateText(std::int64_t count, std::int64_t seconds)
{
    const std::int64_t hundredths = seconds > 0 ? count * 100 / seconds : 0;
    std::array<char, 32> text{};
    char* const end = std::to_chars(text.data(), text.data() + text.size(),
                                    static_cast<double>(hundredths) / 100, std::chars_format::fixed)
                          .ptr;
    return {text.data(), end};
}

std::string durationText(std::int64_t seconds)
{
    const auto twoDigits = [](std::int64_t number) {
        return (number < 10 ? ":0" : ":") + std::to_string(number);
    };
    const std::int64_t minutes = seconds / 60;
    const std::string start =
        minutes < 60 ? std::to_string(minutes) : std::to_string(minutes / 60) + twoDigits(minutes % 60);
    return start + twoDigits(seconds % 60);
}

std::string timeLeftText(std::int64_t seconds) { return durationText(seconds) + " left"; }

std::string htmlText(std::string_view text)
{
    std::string html;
    for (const char c : text) {
        switch (c) {
        case '<':
            html += "&lt;";
            break;
        case '>':
            html += "&gt;";
            break;
        case '&':
            html += "&amp;";
            break;
        default:
            html += c;
        }
    }
    return html;
}

} // namespace zint
