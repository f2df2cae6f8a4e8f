#pragma once

#include "doctor/finding.h"

#include <array>
#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zint {

/// What the doctor looks at, in this order.
enum class DoctorStep { port, opening, answer, adapter, supply, vehicle, units, rate };

enum class StepMark {
    waiting,
    running,
    ok,
    attention, ///< it works, with a remark; or it works otherwise than it is set
    failed,
    skipped, ///< what it needs has failed, or it was not asked for
};

struct DiagnosisStep {
    DoctorStep step;
    StepMark mark = StepMark::waiting;
    std::string text;                    ///< what was seen, in one line; empty while it waits
    std::vector<std::string> notes = {}; ///< further lines
    std::vector<Finding> findings = {};  ///< what is not as it should be
};

/// What the doctor has found. No text of it tells the vehicle's identity.
struct Diagnosis {
    std::string port; ///< as the user reads it: "com1, /dev/ttyUSB0"
    std::vector<DiagnosisStep> steps;
    std::optional<int> bitsPerSecond; ///< at which the adapter answered; nothing where no speed counts
    std::string adapter;              ///< its name
    std::optional<double> volts;
    std::string protocol; ///< in words: "ISO 15765-4 (CAN 11/500)"
    std::vector<std::string> units;
    std::optional<std::chrono::milliseconds> searchTime; ///< until the vehicle's first answer
    std::optional<double> requestsPerSecond;
    bool isStopped = false; ///< by the user

    DiagnosisStep& at(DoctorStep step) { return steps.at(static_cast<std::size_t>(step)); }
    const DiagnosisStep& at(DoctorStep step) const { return steps.at(static_cast<std::size_t>(step)); }
};

/// One of which nothing is known yet.
Diagnosis emptyDiagnosis(std::string port);

/// "Supply voltage".
std::string_view stepTitle(DoctorStep step);

/// "ok", "attention", "failed", "skipped"; empty before that.
std::string_view wordOf(StepMark mark);

/// What has to be mended first; nothing when nothing keeps the connection from working.
std::optional<Finding> firstToDo(const Diagnosis& diagnosis);

/// Whether all that was asked for was looked at and works.
bool works(const Diagnosis& diagnosis);

/// The diagnosis in one sentence: "Everything works: 14 requests a second, ISO 15765-4, 2 control units.", or
/// what to do first.
std::string sentenceOf(const Diagnosis& diagnosis);

/// What is being looked at: "Answer: trying 9600 bits per second"; empty when nothing is.
std::string runningText(const Diagnosis& diagnosis);

/// All of it, to be read or sent by mail.
/// @param head its first lines, such as the program's version and the date
std::string diagnosisText(const Diagnosis& diagnosis, const std::string& head);

/// The same for programs; docs/formats.md describes its members.
std::string diagnosisJson(const Diagnosis& diagnosis);

} // namespace zint
