#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

/// The small helpers that every tool uses.
namespace zint {

/// The number that a hexadecimal text stands for, in upper or lower case; blanks anywhere are skipped.
/// @return nothing for an empty text, one with a character that is no digit, and a number above 0x7FFFFFFF
std::optional<std::int32_t> hexIn(std::string_view text);

/// The same for replies. @return -1 for an empty text or one with a character that is no digit
/// @throws RunTimeError overflow for a number above 0x7FFFFFFF
std::int32_t hexToNumber(std::string_view text);

/// The number in hexadecimal with capitals, and with zeros in front to so many digits; a negative one as its
/// 32 bits.
std::string hexText(std::int32_t number, std::size_t fewestDigits);

/// Each digit of an upper-case hexadecimal text as four characters, the least significant bit first ("1000"
/// for 1); blanks are skipped. Readers of single bits rely on that order.
/// @return empty for a text with any other character, lower-case digits included
std::string hexToBits(std::string_view text);

/// The text with the letters a to z as capitals; all other characters stay.
std::string upperCase(std::string_view text);

/// The text without what stands at its ends and is one of these characters.
std::string_view trimmed(std::string_view text, std::string_view blanks = " ");

/// The value of one upper-case hexadecimal digit, or -1. Replies are upper case; anything else is not a digit
/// here.
int upperHexDigit(char character);

/// @return the position, counted from 1, of the last "\" in the text; 0 when there is none
int lastBackslash(std::string_view text);

/// The part of a path behind its last "\" and its last "/".
std::string fileNamePart(std::string_view path);

/// A path that is written in UTF-8, as all paths in the program are.
std::filesystem::path utf8Path(std::string_view path);

/// A path as the program writes it.
std::string utf8Text(const std::filesystem::path& path);

/// Whether a file of this name exists (a folder is none). Never throws; a path that can't be examined does
/// not exist.
bool fileExists(const std::string& path) noexcept;

/// At most `count` characters from `position` (counted from 1, as positions in replies are); shorter,
/// possibly empty, where the text ends before.
std::string_view textAt(std::string_view text, std::size_t position, std::size_t count);

/// How often something came about in a second, with the decimals that it has, two at most, not rounded; "0"
/// for no time. @param count at least 0. @param seconds at least 0
std::string rateText(std::int64_t count, std::int64_t seconds);

/// A time in minutes and seconds, from an hour on with hours: "1:05", "1:02:05". @param seconds at least 0
std::string durationText(std::int64_t seconds);

/// How long something is going to take ("1:05 left"). @param seconds at least 0
std::string timeLeftText(std::int64_t seconds);

/// A text as it stands between the tags of HTML.
std::string htmlText(std::string_view text);

/// The decimal integer that a text stands for, blanks around it allowed.
/// @return nothing when the text is no integer or exceeds the signed 32-bit range
std::optional<std::int32_t> integerIn(std::string_view text);

/// The same where the user is to be told what is wrong.
/// @throws RunTimeError typeMismatch when the text is no integer, overflow when it exceeds the signed 32-bit
/// range
std::int32_t toInteger(std::string_view text);

} // namespace zint
