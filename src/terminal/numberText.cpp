#include "terminal/numberText.h"

#include "shared/module1.h"

#include <array>
#include <charconv>

namespace zint {

std::string numberText(std::int32_t value, NumberBase base)
{
    std::array<char, 16> digits{};
    const char* const end =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, static_cast<int>(base)).ptr;
    return upperCase({digits.data(), end}) + ' ';
}

} // namespace zint
