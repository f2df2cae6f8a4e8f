#include "runner/pollTexts.h"

#include "catalogue/conversion.h"
#include "catalogue/design.h"
#include "runner/pollLimits.h"
#include "shared/module1.h"
#include "shared/runTimeError.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <system_error>
#include <utility>

namespace zint {
namespace {

std::string shownValue(std::int32_t conversion, std::int32_t raw)
{
    try {
        return displayText(conversion, raw);
    } catch (const RunTimeError& error) {
        return error.what();
    }
}

} // namespace

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

std::string timeoutCommand(SampleSpeed sampleSpeed)
{
    if (!sampleSpeed || sampleSpeed == Design::defaultSpeed)
        return {};
    const double units = *sampleSpeed / std::chrono::duration<double, std::milli>(4);
    std::array<char, 8> digits{};
    const char* const end =
        std::to_chars(digits.data(), digits.data() + digits.size(), std::lrint(units), 16).ptr;
    return (units < 16 ? "ATST 0" : "ATST ") + upperCase(std::string_view(digits.data(), end));
}

void showValues(PollPanel::Row& row, const EventTotals& event, std::int32_t conversion)
{
    const auto showExtreme = [conversion](std::string& cell, bool& isNew, std::int32_t raw) {
        std::string text = shownValue(conversion, raw);
        isNew = !cell.empty() && text != cell; // at first there is nothing to differ from
        cell = std::move(text);
    };
    using Shade = PollPanel::Shade;
    if (event.errorFlag)
        row.shade = Shade::error;
    else if (event.current == event.maximum && event.current == event.minimum)
        row.shade = Shade::constant;
    else
        row.shade = Shade::usual;
    row.value = shownValue(conversion, event.current);
    row.samples = std::to_string(event.sampleCount);
    showExtreme(row.minimum, row.minimumIsNew, event.minimum);
    showExtreme(row.maximum, row.maximumIsNew, event.maximum);
}

std::optional<std::chrono::seconds> timeLimitIn(const std::string& text)
{
    const std::int64_t seconds = numberIn(text, pollLimits::longestRun.count(), 0).value_or(0);
    return seconds > 0 ? std::optional(std::chrono::seconds(seconds)) : std::nullopt;
}

std::string repliesText(const EventTotals& event, std::int32_t before, std::int64_t seconds)
{
    if (event.sampleCount + event.errorCount == 0)
        return {};
    std::string text =
        "Good replies: " + std::to_string(event.sampleCount) + ", bad: " + std::to_string(event.errorCount);
    if (const std::int32_t sampled = event.sampleCount - before; sampled > 0 && seconds > 0)
        text += ", " + rateText(sampled, seconds) + " samples/s";
    return text;
}

} // namespace zint
