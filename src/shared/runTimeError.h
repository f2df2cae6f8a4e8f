#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace zint {

/// An action that can't go on. It is thrown before the action has changed anything, so that giving the action
/// up leaves the data as they were. The event gate shows the fault's number and text, and the reason.
class RunTimeError : public std::runtime_error {
public:
    /// What went wrong, by the number that its user reads.
    enum class Fault { overflow = 6, divisionByZero = 11, typeMismatch = 13 };

    /// @param reason says in sentences what was wrong where, and what to do about it; may be empty
    explicit RunTimeError(Fault fault, std::string reason = {})
        : std::runtime_error(textOf(fault)), fault_(fault), reason_(std::move(reason))
    {
    }

    Fault fault() const { return fault_; }
    const std::string& reason() const { return reason_; }

    static RunTimeError overflow() { return RunTimeError(Fault::overflow); }
    static RunTimeError divisionByZero() { return RunTimeError(Fault::divisionByZero); }
    static RunTimeError typeMismatch() { return RunTimeError(Fault::typeMismatch); }

private:
    static const char* textOf(Fault fault)
    {
        switch (fault) {
        case Fault::overflow:
            return "Overflow";
        case Fault::divisionByZero:
            return "Division by zero";
        case Fault::typeMismatch:
            break;
        }
        return "Type mismatch";
    }

    Fault fault_;
    std::string reason_;
};

} // namespace zint
