#include "scanner/scanParameters.h"

#include "shared/module1.h"

#include <algorithm>
#include <cstddef>

namespace zint {
namespace {

/// Refuses what is too long, and what is no hexadecimal number; an empty text is none.
CheckedBox checkDigits(std::string_view text, std::size_t longest, const char* otherwise,
                       const char* complaint)
{
    if (text.size() > longest || scanNumber(text) < 0)
        return {otherwise, complaint};
    return {upperCase(text), {}};
}

} // namespace

CheckedBox checkHeader(std::string_view text)
{
    constexpr std::size_t length = 6;
    const bool isPrintable = std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
    if (text.size() != length || !isPrintable)
        return {ScanParameters::functionalHeader, "Header must be 6 bytes"};
    return {upperCase(text), {}};
}

CheckedBox checkMode(std::string_view text)
{
    return checkDigits(text, 2, "01", "Mode must be 1 or 2 hex digits");
}

CheckedBox checkPid(std::string_view text)
{
    return checkDigits(text, 4, "", "Pid must be 0 to 4 hex digits");
}

CheckedBox checkSuffix(std::string_view text)
{
    return checkDigits(text, 2, "", "Suffix must be 0 to 2 hex digits");
}

std::int32_t scanNumber(std::string_view text) { return hexIn(text).value_or(-1); }

bool erasesData(const ScanParameters& boxes)
{
    const auto modeOf = [](const std::string& box) { return scanNumber(checkMode(box).text); };
    return !boxes.skipsErasingMode() && modeOf(boxes.modeStart) <= ScanParameters::erasingMode &&
           modeOf(boxes.modeStop) >= ScanParameters::erasingMode;
}

} // namespace zint
