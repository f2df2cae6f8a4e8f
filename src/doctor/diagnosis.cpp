#include "doctor/diagnosis.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

namespace zint {
namespace {

struct StepName {
    DoctorStep step;
    std::string_view name; ///< for programs
    std::string_view title;
};

constexpr std::array stepNames = std::to_array<StepName>({
    {DoctorStep::port, "port", "Port"},
    {DoctorStep::opening, "opening", "Opening"},
    {DoctorStep::answer, "answer", "Answer"},
    {DoctorStep::adapter, "adapter", "Adapter"},
    {DoctorStep::supply, "supply", "Supply voltage"},
    {DoctorStep::vehicle, "vehicle", "Vehicle"},
    {DoctorStep::units, "units", "Control units"},
    {DoctorStep::rate, "rate", "Requests"},
});

constexpr std::array<std::string_view, 6> markWords = {"", "", "ok", "attention", "failed", "skipped"};

std::string numbered(long count, const std::string& one)
{
    return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

bool isWhole(const Diagnosis& diagnosis)
{
    return !diagnosis.isStopped && std::ranges::none_of(diagnosis.steps, [](const DiagnosisStep& step) {
        return step.mark == StepMark::waiting || step.mark == StepMark::running;
    });
}

bool hasRemarks(const Diagnosis& diagnosis)
{
    return std::ranges::any_of(diagnosis.steps,
                               [](const DiagnosisStep& step) { return !step.findings.empty(); });
}

/// "14 requests a second, ISO 15765-4, 2 control units"; the adapter where the vehicle was not asked.
std::string successOf(const Diagnosis& diagnosis)
{
    if (!diagnosis.requestsPerSecond)
        return diagnosis.adapter.empty() ? "the adapter answers" : diagnosis.adapter + " answers";
    return numbered(std::lround(*diagnosis.requestsPerSecond), "request") + " a second, " +
           diagnosis.protocol.substr(0, diagnosis.protocol.find(" (")) + ", " +
           numbered(static_cast<long>(diagnosis.units.size()), "control unit");
}

std::string linesOf(const DiagnosisStep& step)
{
    std::string lines;
    for (const std::string& note : step.notes)
        lines += "    " + note + "\n";
    for (const Finding& finding : step.findings)
        lines += "    " + causeOf(finding) + "\n    > " + firstStepFor(finding) + "\n";
    return lines;
}

} // namespace

Diagnosis emptyDiagnosis(std::string port)
{
    Diagnosis diagnosis{.port = std::move(port)};
    for (const StepName& row : stepNames)
        diagnosis.steps.push_back({.step = row.step});
    return diagnosis;
}

std::string_view stepTitle(DoctorStep step) { return stepNames.at(static_cast<std::size_t>(step)).title; }

std::string_view wordOf(StepMark mark) { return markWords.at(static_cast<std::size_t>(mark)); }

std::optional<Finding> firstToDo(const Diagnosis& diagnosis)
{
    for (const DiagnosisStep& step : diagnosis.steps) {
        for (const Finding& finding : step.findings) {
            if (blocks(finding.what))
                return finding;
        }
    }
    return std::nullopt;
}

bool works(const Diagnosis& diagnosis) { return isWhole(diagnosis) && !firstToDo(diagnosis); }

std::string sentenceOf(const Diagnosis& diagnosis)
{
    if (const auto first = firstToDo(diagnosis))
        return causeOf(*first) + " " + firstStepFor(*first);
    if (diagnosis.isStopped)
        return "The check was stopped.";
    if (!isWhole(diagnosis))
        return {};
    return (hasRemarks(diagnosis) ? "It works, with remarks: " : "Everything works: ") +
           successOf(diagnosis) + ".";
}

std::string runningText(const Diagnosis& diagnosis)
{
    const auto step = std::ranges::find(diagnosis.steps, StepMark::running, &DiagnosisStep::mark);
    if (step == diagnosis.steps.end())
        return {};
    return std::string(stepTitle(step->step)) + (step->text.empty() ? "" : ": " + step->text);
}

std::string diagnosisText(const Diagnosis& diagnosis, const std::string& head)
{
    std::string text = "Connection check\n" + head + "Port: " + diagnosis.port + "\n\n";
    for (const DiagnosisStep& step : diagnosis.steps) {
        const std::string_view word = wordOf(step.mark);
        text += std::string(stepTitle(step.step)) + ": " +
                std::string(word.empty() ? "not looked at" : word) +
                (step.text.empty() ? "" : ", " + step.text) + "\n" + linesOf(step);
    }
    return text + "\n" + sentenceOf(diagnosis) + "\n";
}

std::string diagnosisJson(const Diagnosis& diagnosis)
{
    using Json = nlohmann::ordered_json;
    Json json = {{"schema", 1},
                 {"works", works(diagnosis)},
                 {"summary", sentenceOf(diagnosis)},
                 {"port", diagnosis.port}};
    const auto add = [&json](const char* name, const auto& value) {
        if (value)
            json[name] = *value;
    };
    if (const auto first = firstToDo(diagnosis))
        json["first"] = nameOf(first->what);
    add("bitsPerSecond", diagnosis.bitsPerSecond);
    add("volts", diagnosis.volts);
    if (diagnosis.searchTime)
        json["searchSeconds"] = static_cast<double>(diagnosis.searchTime->count()) / 1000;
    add("requestsPerSecond", diagnosis.requestsPerSecond);
    if (!diagnosis.adapter.empty())
        json["adapter"] = diagnosis.adapter;
    if (!diagnosis.protocol.empty())
        json["protocol"] = diagnosis.protocol;
    json["units"] = diagnosis.units;
    for (const DiagnosisStep& step : diagnosis.steps) {
        Json row = {{"step", stepNames.at(static_cast<std::size_t>(step.step)).name},
                    {"mark", wordOf(step.mark)},
                    {"text", step.text},
                    {"notes", step.notes},
                    {"findings", Json::array()}};
        for (const Finding& finding : step.findings)
            row["findings"].push_back({{"name", nameOf(finding.what)},
                                       {"cause", causeOf(finding)},
                                       {"first", firstStepFor(finding)}});
        json["steps"].push_back(std::move(row));
    }
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace zint
