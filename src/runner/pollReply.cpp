#include "runner/pollReply.h"

#include "shared/module1.h"

#include <algorithm>
#include <limits>

namespace zint {
namespace {

constexpr int echoBytes = 2;
constexpr std::int64_t largestValue = std::numeric_limits<std::int32_t>::max();

/// Puts digits behind a number; what no longer fits stays too large.
std::int64_t extended(std::int64_t number, int factor, std::int64_t digits)
{
    return std::min(number, largestValue + 1) * factor + digits;
}

bool mayStandBetweenBytes(char c) { return c == ' ' || c == '>' || c == '\r' || c == '\n'; }

} // namespace

std::optional<std::int32_t> pollValue(std::string_view reply)
{
    std::int64_t value = 0;
    std::int64_t byte = 0;
    int bytes = 0;
    bool inByte = false;
    for (const char c : reply) {
        if (const int digit = upperHexDigit(c); digit >= 0) {
            byte = extended(byte, 16, digit);
            inByte = true;
            continue;
        }
        if (!inByte && !mayStandBetweenBytes(c))
            return std::nullopt;
        if (inByte) {
            if (bytes >= echoBytes)
                value = extended(value, 256, byte);
            byte = 0;
            inByte = false;
            ++bytes;
        }
        if (c == '\r')
            break;
    }
    if (bytes == 0 || value > largestValue)
        return std::nullopt;
    return static_cast<std::int32_t>(value);
}

std::optional<std::int32_t> rawValueOf(BytesView data)
{
    std::int64_t value = 0;
    for (const std::uint8_t byte : data)
        value = extended(value, 256, byte);
    if (value > largestValue)
        return std::nullopt;
    return static_cast<std::int32_t>(value);
}

bool saysNoData(std::string_view reply) { return reply.starts_with("NO DATA"); }

} // namespace zint
