#include "runner/runBoxes.h"

#include "runner/pollLimits.h"

#include <charconv>
#include <cmath>
#include <system_error>

namespace zint {
namespace {

/// The number in a text as a whole one, or its usual value when it is out of range; nothing when the text is
/// no number.
std::optional<std::int64_t> numberIn(const std::string& text, std::int64_t largest, std::int64_t usual)
{
    const auto start = text.find_first_not_of(" +");
    if (start == std::string::npos)
        return std::nullopt;
    const std::string digits = text.substr(start, text.find_last_not_of(' ') + 1 - start);
    double number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [read, error] = std::from_chars(digits.data(), end, number);
    if (read != end || error == std::errc::invalid_argument || !std::isfinite(number))
        return std::nullopt;
    const double rounded = std::nearbyint(number);
    const bool isInRange = rounded >= 1 && rounded <= static_cast<double>(largest);
    return error == std::errc() && isInRange ? static_cast<std::int64_t>(rounded) : usual;
}

} // namespace

std::int64_t loopsIn(const std::string& text, std::int64_t otherwise)
{
    return numberIn(text, pollLimits::mostLoops, pollLimits::usualLoops).value_or(otherwise);
}

std::int64_t refreshSecondsIn(const std::string& text, std::int64_t otherwise)
{
    return numberIn(text, pollLimits::longestRefresh.count(), pollLimits::usualRefresh.count())
        .value_or(otherwise);
}

std::optional<std::chrono::seconds> timeLimitIn(const std::string& text)
{
    const std::int64_t seconds = numberIn(text, pollLimits::longestRun.count(), 0).value_or(0);
    return seconds > 0 ? std::optional(std::chrono::seconds(seconds)) : std::nullopt;
}

} // namespace zint
