#pragma once

#include <stdexcept>

namespace zint {

/// What is wrong with a command line.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace zint
