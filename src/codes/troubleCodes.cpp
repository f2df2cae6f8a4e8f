#include "codes/troubleCodes.h"

#include "codes/replyText.h"
#include "link/replyBuffer.h"
#include "shared/module1.h"
#include "vehicle/troubleCode.h"

#include <algorithm>
#include <array>

namespace zint {
namespace {

constexpr std::string_view replyStart = "43 ";

bool isCode(std::string_view text) { return text.size() == 5 && hexToNumber(text.substr(1)) >= 0; }

} // namespace

std::vector<std::string> storedCodes(std::string_view reply)
{
    constexpr std::size_t firstCode = replyStart.size() + 1;
    constexpr std::size_t step = 6; // two bytes and their blanks
    std::vector<std::string> codes;
    for (std::size_t position = firstCode; position <= reply.size(); position += step) {
        const int digit = upperHexDigit(reply[position - 1]);
        if (digit < 0)
            continue;
        std::string code(troubleCodePrefix(digit));
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
    for (const std::string_view line : replyLines(reply)) {
        const Bytes bytes = bytesOf(line);
        for (std::size_t i = 1; i + 1 < bytes.size() && bytes[0] == 0x43; i += 2)
            count += bytes[i] != 0 || bytes[i + 1] != 0 ? 1 : 0;
    }
    return count;
}

} // namespace zint
