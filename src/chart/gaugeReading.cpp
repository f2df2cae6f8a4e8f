#include "chart/gaugeReading.h"

#include "catalogue/eventValue.h"
#include "shared/runTimeError.h"

#include <array>
#include <charconv>
#include <cmath>
#include <variant>

namespace zint {
namespace {

std::string roundedText(double number)
{
    const double size = std::abs(number);
    const int decimals = size < 9.995 ? 2 : size < 99.95 ? 1 : 0;
    std::array<char, 32> text{};
    const auto result =
        std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed, decimals);
    return {text.data(), result.ptr};
}

std::string figureOf(const DesignEntry& event, double value)
{
    try {
        const converted::Value shown = convertedValue(event, value);
        if (const auto* number = std::get_if<double>(&shown))
            return roundedText(*number);
        if (const auto* number = std::get_if<converted::Rounded>(&shown); number && number->decimals > 0)
            return roundedText(number->number);
        if (const auto* bare = std::get_if<converted::WithoutUnit>(&shown))
            return std::to_string(bare->number);
        std::string text;
        appendValue(text, shown);
        return text;
    } catch (const RunTimeError& error) {
        return error.what();
    }
}

} // namespace

GaugeReading GaugeReader::read(const SampleStore& samples)
{
    const EventTotals& totals = samples.events()[number_];
    while (seen_ != totals.lastSample) {
        seen_ = seen_ == EventTotals::none ? totals.header + 1 : samples[seen_].link;
        widen(samples[seen_].value);
    }
    GaugeReading reading{.badReplies = totals.errorCount};
    if (seen_ != EventTotals::none) {
        reading.figure = figureOf(event_, totals.current);
        reading.place = placeOf(totals.current);
    }
    if (lowest_) {
        reading.minimum = figureOf(event_, lowest_->value);
        reading.maximum = figureOf(event_, highest_->value);
    }
    return reading;
}

void GaugeReader::widen(double value)
{
    const std::optional<double> number = drawnNumber(event_, value);
    if (!number)
        return;
    if (!lowest_ || *number < lowest_->number)
        lowest_ = {*number, value};
    if (!highest_ || *number > highest_->number)
        highest_ = {*number, value};
}

/// A value that was always the same stands in the middle.
std::optional<double> GaugeReader::placeOf(double value) const
{
    const std::optional<double> number = drawnNumber(event_, value);
    if (!number)
        return std::nullopt;
    const double range = highest_->number - lowest_->number;
    return range > 0 ? (*number - lowest_->number) / range : 0.5;
}

} // namespace zint
