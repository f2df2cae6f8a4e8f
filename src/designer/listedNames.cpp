#include "designer/listedNames.h"

#include <algorithm>
#include <cstddef>

namespace zint {

std::string listedNames(const std::vector<std::string>& names)
{
    constexpr std::size_t most = 10; // a question does not scroll
    std::string text;
    for (std::size_t i = 0; i < std::min(names.size(), most); ++i)
        text += "\r\n   " + names[i];
    return names.size() > most ? text + "\r\n   and " + std::to_string(names.size() - most) + " more" : text;
}

} // namespace zint
