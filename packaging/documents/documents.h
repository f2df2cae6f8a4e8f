#pragma once

#include <string>

namespace CLI {
class App;
} // namespace CLI

namespace zint {

/// The manual page of the program, for man.
std::string manPage(const CLI::App& program);

/// What lets bash complete the program's commands and options.
std::string bashCompletion(const CLI::App& program);

} // namespace zint
