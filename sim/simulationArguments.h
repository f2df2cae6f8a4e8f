#pragma once

#include "sim/simulationOptions.h"

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace zint {

/// A value on the command line does not fit its option. The text is meant for the user.
class ArgumentError : public std::invalid_argument {
public:
    using std::invalid_argument::invalid_argument;
};

/// One of the options that describe a simulation on a command line.
struct SimulationArgument {
    std::string_view name;      ///< without the leading "--"
    std::string_view valueName; ///< empty for an option without a value
    std::string_view help;
    void (*apply)(SimulationOptions& options, std::string_view value); ///< @throws ArgumentError
};

/// All of them, in the order in which a help text shows them.
std::span<const SimulationArgument> simulationArguments();

/// Sets the option of that name. @throws ArgumentError when there is none, or when the value does not fit
void applySimulationArgument(SimulationOptions& options, std::string_view name, std::string_view value);

/// Sets the options in a text such as "protocol=can units=2 diesel".
/// @param between two options. @throws ArgumentError, with the option in front of what is wrong
SimulationOptions simulationOf(std::string_view text, SimulationOptions options, char between = ' ');

/// One line of a help text.
std::string argumentHelp(std::string_view name, std::string_view valueName, std::string_view help);

} // namespace zint
