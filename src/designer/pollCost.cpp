#include "designer/pollCost.h"

#include "catalogue/requestTime.h"

#include <array>
#include <charconv>

namespace zint {
namespace {

std::string oneDecimal(double value)
{
    std::array<char, 32> text{};
    const auto written =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 1);
    return {text.data(), written.ptr};
}

} // namespace

std::string pollCost(const DesignGrid& grid, int sampleSpeed, int bitsPerSecond)
{
    double requests = 0;
    for (const GridRow& row : grid.rows) {
        if (row.isEnabled())
            requests += 1.0 / row.frequency;
    }
    const double seconds = requests * requestSeconds(sampleSpeed, bitsPerSecond);
    return "About " + oneDecimal(requests) + " requests and " + oneDecimal(seconds) + " s per pass";
}

} // namespace zint
