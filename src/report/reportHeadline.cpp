#include "report/reportHeadline.h"

#include <algorithm>

namespace zint {
namespace {

bool isLit(const VehicleFacts& facts)
{
    return std::ranges::any_of(facts.units, [](const auto& unit) { return unit.second.mil.value_or(false); });
}

bool hasTold(const VehicleFacts& facts, CodeKind kind)
{
    return std::ranges::any_of(facts.units,
                               [kind](const auto& unit) { return unit.second.codes.contains(kind); });
}

std::string codesText(const VehicleFacts& facts)
{
    const int stored = codeCount(facts, CodeKind::stored);
    std::string text = stored == 0 ? "No codes stored"
                                   : std::to_string(stored) + (stored == 1 ? " code" : " codes") + " stored";
    for (const auto& [kind, name] :
         {std::pair(CodeKind::pending, " pending"), {CodeKind::permanent, " permanent"}}) {
        if (const int count = codeCount(facts, kind); count > 0)
            text += ", " + std::to_string(count) + name;
    }
    return text + ".";
}

std::string readinessText(const VehicleFacts& facts)
{
    const auto [supported, incomplete] = monitorCounts(facts);
    const bool fails = isLit(facts) || incomplete > 0;
    const std::string ready = incomplete == 0 ? " All " + std::to_string(supported) + " monitors ready"
                                              : " " + std::to_string(incomplete) + " of " +
                                                    std::to_string(supported) + " monitors not ready";
    return ready + (fails ? ": an emissions test would fail today." : ".");
}

} // namespace

int codeCount(const VehicleFacts& facts, CodeKind kind)
{
    int count = 0;
    for (const auto& [name, unit] : facts.units) {
        const auto codes = unit.codes.find(kind);
        count += codes == unit.codes.end() ? 0 : static_cast<int>(codes->second.size());
    }
    return count;
}

MonitorCounts monitorCounts(const VehicleFacts& facts)
{
    MonitorCounts counts;
    for (const auto& [name, unit] : facts.units) {
        if (!unit.readiness)
            continue;
        for (const auto& [monitor, state] : unit.readiness->monitors) {
            counts.supported += state == MonitorState::unsupported ? 0 : 1;
            counts.incomplete += state == MonitorState::incomplete ? 1 : 0;
        }
    }
    return counts;
}

std::string headlineOf(const VehicleFacts& facts)
{
    std::string text = isLit(facts) ? "The light is on. " : "";
    if (hasTold(facts, CodeKind::stored))
        text += codesText(facts);
    if (monitorCounts(facts).supported > 0)
        text += readinessText(facts);
    return text;
}

} // namespace zint
