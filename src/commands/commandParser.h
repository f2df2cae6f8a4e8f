#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

namespace zint {

/// A command line, sorted. Options may stand before the command that they belong to.
struct SortedArguments {
    struct Option {
        std::string name;                 ///< its first long one, with the dashes
        std::optional<std::string> value; ///< if it takes one
    };

    std::vector<std::string> words; ///< the command and its files
    std::vector<Option> options;

    bool has(std::string_view option) const
    {
        return std::ranges::find(options, option, &Option::name) != options.end();
    }
};

/// @param program and its commands, described. @param arguments without the program's name
/// @throws UsageError for an option that no command has, or that lacks its value
SortedArguments sortArguments(const CLI::App& program, const std::vector<std::string>& arguments);

/// The command that the words begin with; the program for none.
const CLI::App& commandOf(const CLI::App& program, const std::vector<std::string>& words);

/// Reads a command line into what describes its command. @throws UsageError
void parse(CLI::App& program, const SortedArguments& arguments);

/// The command as it is typed: "zint-obd dtc setup".
std::string nameOf(const CLI::App& command);

/// The same with its words: "zint-obd poll DESIGN.obc".
std::string usageOf(const CLI::App& command);

/// The commands in the order of their description, without those that only hold others.
std::vector<const CLI::App*> allCommands(const CLI::App& program);

} // namespace zint
