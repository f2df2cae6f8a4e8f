#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace zint {

/// An action that can't go on. It is thrown before the action has changed anything, so that giving the action
/// up leaves the data as they were; the event gate's error handler shows number and text, and the reason.
class RunTimeError : public std::runtime_error {
public:
    /// @param reason says in sentences what was wrong where, and what to do about it; may be empty
    RunTimeError(int number, const std::string& text, std::string reason = {})
        : std::runtime_error(text), number_(number), reason_(std::move(reason))
    {
    }

    int number() const { return number_; }
    const std::string& reason() const { return reason_; }

    static RunTimeError overflow(std::string reason = {}) { return {6, "Overflow", std::move(reason)}; }
    static RunTimeError divisionByZero(std::string reason = {})
    {
        return {11, "Division by zero", std::move(reason)};
    }
    static RunTimeError typeMismatch(std::string reason = {})
    {
        return {13, "Type mismatch", std::move(reason)};
    }

private:
    int number_;
    std::string reason_;
};

} // namespace zint
