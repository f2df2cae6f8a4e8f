#include "codes/troubleCodes.h"

#include "shared/module1.h"

#include <array>

namespace zint {
namespace {

constexpr std::array<std::string_view, 16> prefixes = {
    "P0", "P1", "P2", "P3", "C0", "C1", "C2", "C3", "B0", "B1", "B2", "B3", "U0", "U1", "U2", "U3",
};

} // namespace

std::vector<std::string> storedCodes(std::string_view reply)
{
    constexpr std::size_t firstCode = 4; // behind "43 "
    constexpr std::size_t step = 6;      // two bytes and their blanks
    std::vector<std::string> codes;
    for (std::size_t position = firstCode; position <= reply.size(); position += step) {
        const int digit = upperHexDigit(reply[position - 1]);
        if (digit < 0)
            continue;
        std::string code(prefixes[static_cast<std::size_t>(digit)]);
        code += textAt(reply, position + 1, 1);
        code += textAt(reply, position + 3, 2);
        if (code != "P0000")
            codes.push_back(std::move(code));
    }
    return codes;
}

} // namespace zint
