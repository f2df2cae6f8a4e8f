#pragma once

#include <string>
#include <string_view>

namespace zint {

/// Extra initialisation commands as the user typed them, checked.
struct InitCommands {
    std::string commands;  ///< in upper case; empty clears them
    std::string complaint; ///< why they are refused, as a message; empty when they are taken
};

/// Only the beginning of the answer is looked at: commands behind a ";" are the user's own responsibility.
/// @throws NotStorable
InitCommands checkInitCommands(std::string_view answer);

} // namespace zint
