#pragma once

#include "doctor/diagnosis.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zint {

/// Asks an adapter what it is and what it can do. Only commands are sent that last until the next reset or
/// "ATD" and reach no vehicle. What its maker is, or whether it is a copy, is not judged.
class AdapterExam {
public:
    /// @param name its answer to "ATI"; "?" when it refuses that
    explicit AdapterExam(std::string name) : name_(std::move(name)) {}

    /// The next command without its end; empty when all is asked.
    std::string_view next() const;

    /// @param answer to that command
    void take(std::string_view answer, std::chrono::milliseconds took);

    /// Whether the answers come one behind the commands, so that none can be relied on.
    bool isOneBehind() const { return isOneBehind_; }

    /// Whether it takes the command to show headers.
    bool canShowHeaders() const;

    /// What was found out, as the step shows it.
    DiagnosisStep step() const;

private:
    bool isRefused(std::size_t row) const;
    std::vector<std::string> missingOfVersion() const;

    std::string name_;
    std::string description_; ///< its answer to "AT@1"
    std::size_t asked_ = 0;
    std::vector<std::size_t> refused_; ///< rows of the table
    std::chrono::milliseconds slowest_{0};
    bool saysYesToAll_ = false;
    bool echoStays_ = false;
    bool isOneBehind_ = false;
};

} // namespace zint
