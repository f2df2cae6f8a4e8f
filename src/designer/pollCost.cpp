#include "designer/pollCost.h"

#include <array>
#include <charconv>

namespace zint {
namespace {

constexpr double charactersPerRequest = 21; // "010C" and its end, the reply and its prompt
constexpr double bitsPerCharacter = 10;
constexpr double automaticWait = 0.1; // seconds; adapters that choose for themselves wait about so long

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
    const double wait = sampleSpeed == Design::automaticSpeed ? automaticWait : sampleSpeed / 1000.0;
    const double seconds = requests * (wait + charactersPerRequest * bitsPerCharacter / bitsPerSecond);
    return "About " + oneDecimal(requests) + " requests and " + oneDecimal(seconds) + " s per pass";
}

} // namespace zint
