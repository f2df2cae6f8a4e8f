#include "runner/openingCommands.h"

#include "shared/module1.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace zint {
namespace {

/// The adapter's time-out command; empty for the speeds that it has by itself.
std::string timeoutCommand(SampleSpeed sampleSpeed)
{
    if (!sampleSpeed || sampleSpeed == Design::defaultSpeed)
        return {};
    const double units = *sampleSpeed / std::chrono::duration<double, std::milli>(4);
    return (units < 16 ? "ATST 0" : "ATST ") + hexText(static_cast<std::int32_t>(std::lrint(units)), 1);
}

} // namespace

std::string openingCommands(const Design& design)
{
    const std::string timeout = timeoutCommand(design.sampleSpeed);
    const bool hasBoth = !design.extraCommands.empty() && !timeout.empty();
    return design.extraCommands + (hasBoth ? ";" : "") + timeout;
}

std::deque<std::string> commandsIn(std::string_view text)
{
    std::deque<std::string> commands;
    while (!text.empty()) {
        const auto end = std::min(text.find(';'), text.size());
        commands.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return commands;
}

} // namespace zint
