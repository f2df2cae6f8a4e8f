#include "codes/replyText.h"

#include "link/replyBuffer.h"
#include "shared/module1.h"

#include <string>

namespace zint {

Bytes bytesOf(std::string_view line)
{
    std::string digits(line);
    std::erase(digits, ' ');
    if (digits.size() % 2 != 0)
        return {};
    Bytes bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        const int byte = hexToNumber(digits.substr(i, 2));
        if (byte < 0)
            return {};
        bytes.push_back(static_cast<std::uint8_t>(byte));
    }
    return bytes;
}

std::vector<UnitStatus> unitStatuses(std::string_view statusReply)
{
    std::vector<UnitStatus> units;
    for (const std::string_view line : replyLines(statusReply)) {
        const Bytes bytes = bytesOf(line);
        if (bytes.size() > 2 && bytes[0] == 0x41 && bytes[1] == 0x01)
            units.push_back({.isLit = bytes[2] >= milOn, .codes = bytes[2] % milOn});
    }
    return units;
}

} // namespace zint
