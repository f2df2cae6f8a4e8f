#pragma once

#include <stdexcept>
#include <string>

namespace zint {

/// An action that can't go on. It is thrown before the action has changed anything, so that giving the action
/// up leaves the data as they were; the event gate's error handler shows number and text.
class RunTimeError : public std::runtime_error {
public:
    RunTimeError(int number, const std::string& text) : std::runtime_error(text), number_(number) {}

    int number() const { return number_; }

    static RunTimeError overflow() { return {6, "Overflow"}; }
    static RunTimeError divisionByZero() { return {11, "Division by zero"}; }
    static RunTimeError typeMismatch() { return {13, "Type mismatch"}; }

private:
    int number_;
};

} // namespace zint
