#include "catalogue/chooser.h"

#include "shared/module1.h"

#include <algorithm>

namespace zint {

std::string chooserText(std::int32_t number, std::string_view name)
{
    return std::to_string(number) + ">" + std::string(name);
}

std::int32_t chooserNumber(std::string_view text)
{
    const auto mark = text.find('>');
    if (mark == std::string_view::npos)
        return 0;
    std::string digits;
    std::ranges::copy_if(text.substr(0, mark), std::back_inserter(digits),
                         [](char c) { return c >= '0' && c <= '9'; });
    return digits.empty() ? 0 : toInteger(digits);
}

} // namespace zint
