#include "scanner/scanReply.h"

#include "scanner/scanParameters.h"

#include <array>
#include <charconv>

namespace zint {
namespace {

constexpr double byteRange = 256;

/// What stands in a text for a byte.
char characterOf(std::int32_t byte)
{
    constexpr std::int32_t firstCharacter = 32;
    constexpr std::int32_t lastCharacter = 127;
    return byte < firstCharacter || byte > lastCharacter ? '.' : static_cast<char>(byte);
}

void takeByte(ScanReply& reply, std::string_view piece)
{
    const std::int32_t byte = scanNumber(piece);
    if (byte < 0)
        return;
    reply.ascii += characterOf(byte);
    reply.value = reply.value * byteRange + byte;
}

} // namespace

ScanReply classify(std::string_view reply, std::string_view expectedPrefix)
{
    ScanReply found;
    if (reply.starts_with(expectedPrefix)) {
        found.kind = ScanReply::Kind::valid;
        reply.remove_prefix(expectedPrefix.size());
    }
    const auto end = reply.find('\r');
    found.data = reply.substr(0, end == std::string_view::npos ? 0 : end);
    if (found.kind != ScanReply::Kind::valid) {
        if (found.data == "NO DATA")
            found.kind = ScanReply::Kind::noData;
        return found;
    }
    for (std::string_view rest = found.data;;) {
        const auto blank = rest.find(' ');
        takeByte(found, rest.substr(0, blank));
        if (blank == std::string_view::npos)
            return found;
        rest.remove_prefix(blank + 1);
    }
}

bool isListed(const ScanReply& reply, ScanFilter filter)
{
    using Kind = ScanReply::Kind;
    switch (filter) {
    case ScanFilter::all:
        return true;
    case ScanFilter::valid:
        return reply.kind == Kind::valid;
    case ScanFilter::validNonZero:
        return reply.kind == Kind::valid && reply.value > 0;
    case ScanFilter::exceptNoData:
        return reply.kind != Kind::noData;
    }
    return true;
}

std::string decimalText(double value)
{
    std::array<char, 320> digits{}; // the largest number has 309
    char* const end =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, 0).ptr;
    return {digits.data(), end};
}

} // namespace zint
