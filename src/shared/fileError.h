#pragma once

#include <stdexcept>

namespace zint {

/// A file can't be read or written. The text tells the user which one, why, and what to do where that is
/// known.
class FileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace zint
