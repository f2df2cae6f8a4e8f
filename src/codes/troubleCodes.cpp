#include "codes/troubleCodes.h"

#include "codes/replyText.h"
#include "shared/module1.h"

#include <algorithm>
#include <array>

namespace zint {
namespace {

constexpr std::string_view replyStart = "43 ";

constexpr std::array<std::string_view, 16> prefixes = {
    "P0", "P1", "P2", "P3", "C0", "C1", "C2", "C3", "B0", "B1", "B2", "B3", "U0", "U1", "U2", "U3",
};

bool isCode(std::string_view text) { return text.size() == 5 && hexToNumber(text.substr(1)) >= 0; }

} // namespace

std::string troubleCode(std::uint8_t high, std::uint8_t low)
{
    return std::string(prefixes[high / 16]) + hexText(high % 16, 1) + hexText(low, 2);
}

std::vector<std::string> storedCodes(std::string_view reply)
{
    constexpr std::size_t firstCode = replyStart.size() + 1;
    constexpr std::size_t step = 6; // two bytes and their blanks
    std::vector<std::string> codes;
    for (std::size_t position = firstCode; position <= reply.size(); position += step) {
        const int digit = upperHexDigit(reply[position - 1]);
        if (digit < 0)
            continue;
        std::string code(prefixes[static_cast<std::size_t>(digit)]);
        code += textAt(reply, position + 1, 1);
        code += textAt(reply, position + 3, 2);
        if (code != noTroubleCode)
            codes.push_back(std::move(code));
    }
    return codes;
}

int listedCodeCount(std::string_view reply)
{
    return reply.starts_with(replyStart) ? static_cast<int>(std::ranges::count_if(storedCodes(reply), isCode))
                                         : 0;
}

int storedCodeCount(std::string_view reply)
{
    int count = 0;
    for (const std::string_view line : linesOf(reply)) {
        const Bytes bytes = bytesOf(line);
        for (std::size_t i = 1; i + 1 < bytes.size() && bytes[0] == 0x43; i += 2)
            count += bytes[i] != 0 || bytes[i + 1] != 0 ? 1 : 0;
    }
    return count;
}

} // namespace zint
