#pragma once

#include <stdexcept>
#include <string>

namespace zint {

/// A serial port could not be opened or set up. Carries the operating system's number and text.
class CommError : public std::runtime_error {
public:
    CommError(int number, const std::string& description) : std::runtime_error(description), number_(number)
    {
    }

    int number() const { return number_; }

private:
    int number_;
};

} // namespace zint
