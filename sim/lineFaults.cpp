#include "sim/lineFaults.h"

#include "shared/module1.h"

#include <utility>

namespace zint {
namespace {

using Lines = std::vector<std::string>;

void loseLine(Lines& lines, Framing) { lines.erase(lines.begin() + static_cast<long>(lines.size() / 2)); }

void swapLastLines(Lines& lines, Framing) { std::swap(lines.back(), lines[lines.size() - 2]); }

void doubleLine(Lines& lines, Framing)
{
    std::string last = lines.back();
    lines.push_back(std::move(last));
}

/// The last digit of the first line is another one: with headers the line's check no longer fits. On CAN the
/// adapter notices by itself.
void spoilCheck(Lines& lines, Framing framing)
{
    std::string& line = lines.front();
    const std::size_t place = line.find_last_not_of(' ');
    line[place] = hexText(upperHexDigit(line[place]) ^ 1, 1).front();
    line += framing == Framing::isoTp ? "<RX ERROR" : "";
}

struct Kind {
    int AdapterOptions::*every;
    std::size_t fewestLines; ///< of a reply that it can happen to
    void (*spoil)(Lines& lines, Framing framing);
};

constexpr std::array<Kind, LineFaults::kinds> kindTable{{
    {&AdapterOptions::loseLineEvery, 2, loseLine},
    {&AdapterOptions::swapLinesEvery, 2, swapLastLines},
    {&AdapterOptions::doubleLineEvery, 1, doubleLine},
    {&AdapterOptions::wrongCheckEvery, 1, spoilCheck},
}};

} // namespace

LineFaults::LineFaults(const AdapterOptions& options)
{
    for (std::size_t i = 0; i < kinds; ++i)
        every_[i] = options.*kindTable[i].every;
}

void LineFaults::apply(Lines& lines, Framing framing)
{
    for (std::size_t i = 0; i < kinds; ++i) {
        if (every_[i] > 0 && lines.size() >= kindTable[i].fewestLines && ++replies_[i] % every_[i] == 0)
            kindTable[i].spoil(lines, framing);
    }
}

} // namespace zint
