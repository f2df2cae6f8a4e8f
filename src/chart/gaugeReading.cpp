#include "chart/gaugeReading.h"

#include "catalogue/conversion.h"
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

std::string figureOf(std::int32_t conversion, std::int32_t raw)
{
    const Conversion* row = findConversion(conversion);
    if (row == nullptr)
        return {};
    try {
        const converted::Value value = row->formula(raw);
        if (const auto* number = std::get_if<double>(&value))
            return roundedText(*number);
        if (const auto* bare = std::get_if<converted::WithoutUnit>(&value))
            return std::to_string(bare->number);
        return convert(conversion, raw);
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
        reading.figure = figureOf(event_.conversion, totals.current);
        reading.place = placeOf(totals.current);
    }
    if (lowest_) {
        reading.minimum = figureOf(event_.conversion, lowest_->raw);
        reading.maximum = figureOf(event_.conversion, highest_->raw);
    }
    return reading;
}

void GaugeReader::widen(std::int32_t raw)
{
    const std::optional<double> number = convertedNumber(event_.conversion, raw);
    if (!number)
        return;
    if (!lowest_ || *number < lowest_->number)
        lowest_ = {*number, raw};
    if (!highest_ || *number > highest_->number)
        highest_ = {*number, raw};
}

/// A value that was always the same stands in the middle.
std::optional<double> GaugeReader::placeOf(std::int32_t raw) const
{
    const std::optional<double> number = convertedNumber(event_.conversion, raw);
    if (!number)
        return std::nullopt;
    const double range = highest_->number - lowest_->number;
    return range > 0 ? (*number - lowest_->number) / range : 0.5;
}

} // namespace zint
