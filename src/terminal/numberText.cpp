#include "terminal/numberText.h"

#include "shared/module1.h"

#include <array>
#include <charconv>
#include <string_view>

namespace zint {
namespace {

int radixOf(NumberBase base)
{
    switch (base) {
    case NumberBase::hexadecimal:
        return 16;
    case NumberBase::octal:
        return 8;
    case NumberBase::decimal:
        break;
    }
    return 10;
}

} // namespace

std::string numberText(std::int32_t value, NumberBase base)
{
    std::array<char, 16> digits{};
    const auto [end, error] =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, radixOf(base));
    return upperCase(std::string_view(digits.data(), end)) + ' ';
}

} // namespace zint
