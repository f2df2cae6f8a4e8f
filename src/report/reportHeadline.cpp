#include "report/reportHeadline.h"

#include "report/requestOutcomes.h"

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

/// Whether a control unit owes its stored codes.
bool areCodesLacking(const VehicleFacts& facts)
{
    return std::ranges::any_of(requestOutcomes(facts), [](const RequestOutcome& outcome) {
        return outcome.request == "03" && outcome.kind != RequestOutcome::Kind::notSupported;
    });
}

/// "2 codes stored, 1 pending."; "No codes stored" only where each control unit has said so.
std::string codesText(const VehicleFacts& facts)
{
    const bool isLacking = areCodesLacking(facts);
    std::string text;
    for (const auto& [kind, name] : {std::pair(CodeKind::stored, " stored"),
                                     {CodeKind::pending, " pending"},
                                     {CodeKind::permanent, " permanent"}}) {
        const int count = codeCount(facts, kind);
        if (count > 0)
            text += (text.empty() ? "" : ", ") + std::to_string(count) +
                    (!text.empty() ? ""
                     : count == 1  ? " code"
                                   : " codes") +
                    name;
        else if (kind == CodeKind::stored && hasTold(facts, kind) && !isLacking)
            text = "No codes stored";
    }
    text += text.empty() ? "" : ".";
    if (isLacking)
        text += std::string(text.empty() ? "" : " ") + (hasTold(facts, CodeKind::stored)
                                                            ? "Not all stored codes could be read."
                                                            : "The stored codes could not be read.");
    return text;
}

std::string readinessText(const VehicleFacts& facts)
{
    const std::string fails = "an emissions test would fail today.";
    const auto [supported, incomplete] = monitorCounts(facts);
    if (supported == 0)
        return {};
    const std::string monitors = std::to_string(supported) + (supported == 1 ? " monitor" : " monitors");
    if (incomplete > 0)
        return std::to_string(incomplete) + " of " + monitors + " not ready: " + fails;
    const std::string ready = (supported == 1 ? "" : "All ") + monitors + " ready";
    return ready + (isLit(facts) ? ", but with the light on " + fails : ".");
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
    std::string text;
    for (const std::string& sentence : {std::string(isLit(facts) ? "The Check Engine light is on." : ""),
                                        codesText(facts), readinessText(facts)})
        text += (text.empty() || sentence.empty() ? "" : " ") + sentence;
    return text;
}

} // namespace zint
