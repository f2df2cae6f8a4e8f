#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The character set of all texts in the program.
namespace zint {

/// The text in UTF-8: as it is when it is valid UTF-8, else read as Windows-1252, as older programs wrote.
std::string toUtf8(std::string_view bytes);

/// At most `count` characters, not bytes, from the first one on; the text is valid UTF-8.
std::string_view firstCharacters(std::string_view text, std::size_t count);

} // namespace zint
