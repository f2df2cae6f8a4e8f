#pragma once

#include "sim/simulatedAdapter.h"
#include "sim/simulationArguments.h"

#include <algorithm>
#include <string>
#include <utility>

namespace zint {

/// The options with what a text such as "units=2 diesel" adds.
inline SimulationOptions simulated(const std::string& words, SimulationOptions options = {},
                                   char between = ' ')
{
    return simulationOf(words, std::move(options), between);
}

/// What comes until the adapter waits for a command, and lets that time pass.
inline std::string replyOf(SimulatedAdapter& adapter, const std::string& bytes, SimulatedAdapter::Time& now)
{
    adapter.receive(bytes, now);
    std::string text;
    while (const auto due = adapter.nextDue()) {
        now = std::max(now, *due);
        text += adapter.take(now);
    }
    return text;
}

} // namespace zint
