#include "doctor/adapterExam.h"

#include "doctor/adapterTalk.h"
#include "shared/module1.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace zint {
namespace {

enum class Purpose { echo, description, nonsense, witness, setting };

struct Probe {
    std::string_view command;
    Purpose purpose;
    int since = 10;             ///< the version in which it came, times 10
    std::string_view what = {}; ///< that it sets
};

// A setting is given the value that the tools use, which "ATD" takes back. Without ATM0 an adapter stores the
// protocol that the search for the vehicle finds.
constexpr std::array probes = std::to_array<Probe>({
    {"ATE0", Purpose::echo},
    {"AT@1", Purpose::description},
    {"ATQQ", Purpose::nonsense},
    {"ATM0", Purpose::witness},
    {"ATIGN", Purpose::witness, 14},
    {"ATRD", Purpose::witness, 14},
    {"ATAMC", Purpose::witness, 20},
    {"ATL0", Purpose::setting, 10, "line feeds"},
    {"ATH1", Purpose::setting, 10, "headers"},
    {"ATS0", Purpose::setting, 13, "blanks"},
    {"ATAL", Purpose::setting, 10, "long messages"},
    {"ATAT1", Purpose::setting, 12, "adaptive timing"},
    {"ATST32", Purpose::setting, 10, "waiting time"},
});

bool isRefusal(std::string_view core) { return core == "?" || core.ends_with("| ?"); }

/// The version times 10 that a name such as "ELM327 v1.5" claims; 0 where it claims none.
int claimedVersion(std::string_view name)
{
    const auto isDigit = [&name](std::size_t i) {
        return i < name.size() && std::isdigit(static_cast<unsigned char>(name[i])) != 0;
    };
    for (std::size_t i = 0; i < name.size(); ++i) {
        if ((name[i] == 'v' || name[i] == 'V') && isDigit(i + 1) && name.substr(i + 2).starts_with('.') &&
            isDigit(i + 3))
            return (name[i + 1] - '0') * 10 + (name[i + 3] - '0');
    }
    return 0;
}

std::string joined(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : ", ") + word;
    return text;
}

} // namespace

std::string_view AdapterExam::next() const
{
    return asked_ < probes.size() ? probes.at(asked_).command : std::string_view();
}

void AdapterExam::take(std::string_view answer, std::chrono::milliseconds took)
{
    const Probe& probe = probes.at(asked_);
    const std::string core = coreOf(probe.command, answer);
    const bool hasEcho = upperCase(answer).find(probe.command) != std::string::npos;
    if (isRefusal(core))
        refused_.push_back(asked_);
    // The first command behind the name: an adapter that is one behind answers it with the name.
    isOneBehind_ = isOneBehind_ || (probe.purpose == Purpose::echo && !isRefusal(name_) &&
                                    core.find(name_) != std::string::npos);
    echoStays_ = echoStays_ || (probe.purpose != Purpose::echo && hasEcho);
    saysYesToAll_ = saysYesToAll_ || (probe.purpose == Purpose::nonsense && core == "OK");
    if (probe.purpose == Purpose::description && !isRefusal(core))
        description_ = core;
    slowest_ = std::max(slowest_, took);
    ++asked_;
}

bool AdapterExam::isRefused(std::size_t row) const
{
    return std::ranges::find(refused_, row) != refused_.end();
}

bool AdapterExam::canShowHeaders() const
{
    const auto* const headers = std::ranges::find(probes, "ATH1", &Probe::command);
    return !isRefused(static_cast<std::size_t>(headers - probes.begin()));
}

/// What the claimed version would have. Whoever refuses a setting of it is told by the setting's name, too.
std::vector<std::string> AdapterExam::missingOfVersion() const
{
    std::vector<std::string> missing;
    for (const std::size_t row : refused_) {
        const Probe& probe = probes.at(row);
        if (probe.purpose != Purpose::nonsense && probe.since <= claimedVersion(name_))
            missing.emplace_back(probe.command);
    }
    return missing;
}

DiagnosisStep AdapterExam::step() const
{
    DiagnosisStep step{.step = DoctorStep::adapter, .mark = StepMark::ok};
    const bool isNameless = isRefusal(name_);
    step.text = (isNameless ? "an adapter without a name" : name_) +
                (description_.empty() || description_ == name_ ? "" : " (" + description_ + ")") +
                ", answers within " + std::to_string(slowest_.count()) + " ms";
    std::vector<std::string> can;
    std::vector<std::string> cannot;
    std::vector<std::string> refused;
    for (std::size_t row = 0; row < asked_; ++row) {
        const Probe& probe = probes.at(row);
        if (probe.purpose == Purpose::setting)
            (isRefused(row) ? cannot : can).emplace_back(probe.what);
        if (isRefused(row) && probe.purpose != Purpose::nonsense)
            refused.emplace_back(probe.command);
    }
    if (!can.empty())
        step.notes.push_back("Can be set: " + joined(can));
    if (!refused.empty())
        step.notes.push_back("Refuses: " + joined(refused));
    if (const auto missing = missingOfVersion(); !missing.empty())
        step.notes.push_back("Version " + std::to_string(claimedVersion(name_) / 10) + "." +
                             std::to_string(claimedVersion(name_) % 10) +
                             ", which it claims, would have: " + joined(missing));
    if (isOneBehind_)
        step.findings.push_back({Observation::oneBehind});
    if (isNameless)
        step.findings.push_back({Observation::nameless});
    if (!cannot.empty())
        step.findings.push_back({Observation::settingsRefused, joined(cannot)});
    if (echoStays_)
        step.findings.push_back({Observation::echoStays});
    if (saysYesToAll_)
        step.findings.push_back({Observation::saysYesToAll});
    return step;
}

} // namespace zint
