#include "doctor/doctorPanel.h"

namespace zint {

DoctorPanel panelOf(const ConnectionDoctor& doctor, bool isOtherPort)
{
    const Diagnosis& found = doctor.diagnosis();
    const bool isRunning = doctor.isRunning();
    const bool hasAnswered = !isRunning && found.at(DoctorStep::adapter).mark >= StepMark::ok &&
                             found.at(DoctorStep::adapter).mark <= StepMark::attention;
    return {
        .check = {.caption = isRunning ? "Stop" : "Check"},
        .takeOver = {.caption = "Take Over", .enabled = hasAnswered && (isOtherPort || doctor.otherSpeed())},
        .headline = isRunning ? "" : sentenceOf(found),
        .statusBox = isRunning ? runningText(found) : "Ready",
        .ProgressBar1 = {.value = doctor.progress()}};
}

std::string textOf(const DiagnosisStep& step)
{
    const std::string_view word = wordOf(step.mark);
    std::string text(stepTitle(step.step));
    text += (word.empty() ? "" : " - ") + std::string(word) + (step.text.empty() ? "" : ": " + step.text);
    for (const std::string& note : step.notes)
        text += "\r\n" + note;
    for (const Finding& finding : step.findings)
        text += "\r\n" + causeOf(finding) + " " + firstStepFor(finding);
    return text;
}

} // namespace zint
