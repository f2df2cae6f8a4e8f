#pragma once

#include "commands/usageError.h"
#include "connection/connectionOptions.h"
#include "samples/csvExport.h"

#include <CLI/App.hpp>
#include <chrono>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// What the commands need to describe their options.
namespace zint {

/// A path as it holds in any folder.
std::string wholePath(const std::string& path);

/// Adds an option that a function reads.
/// @param name with its dashes. @param valueName as help shows it. @param read may throw UsageError; the
/// option and its value are put in front of what it says
CLI::Option* addValue(CLI::App& command, const std::string& name, const std::string& valueName,
                      const std::string& description, std::function<void(const std::string&)> read);

/// Adds an option for a whole number. @param what the number counts, for the complaint: "seconds"
CLI::Option* addNumber(CLI::App& command, const std::string& name, const std::string& valueName,
                       const std::string& description, const std::string& what,
                       std::pair<int, int> leastAndMost, std::function<void(int)> take);

inline constexpr int mostSeconds = 86400;

/// Adds --timeout. @param description when the command gives up
CLI::Option* addTimeout(CLI::App& command, std::chrono::seconds& timeout, const std::string& description);

/// Adds an option for the name of a file.
CLI::Option* addFile(CLI::App& command, const std::string& name, std::string& path,
                     const std::string& description);

/// Adds a word that the command needs, or several for a vector.
template <typename Words>
void addWord(CLI::App& command, const char* name, Words& words, const char* description)
{
    command.add_option(name, words, description)->required();
}

/// Adds --quiet.
void addQuiet(CLI::App& command, bool& quiet);

/// An option of which only one may be given, and what it stands for.
template <typename Value>
struct Choice {
    const char* name;
    Value value;
    const char* description;
};

/// @throws UsageError when more than one of the options was given
void requireOne(const std::vector<const CLI::Option*>& options);

template <typename Value>
void addChoices(CLI::App& command, const char* group, Value& chosen,
                std::initializer_list<Choice<Value>> choices)
{
    const auto options = std::make_shared<std::vector<const CLI::Option*>>();
    for (const Choice<Value>& choice : choices) {
        const auto choose = [&chosen, value = choice.value, options] {
            requireOne(*options);
            chosen = value;
        };
        options->push_back(command.add_flag_callback(choice.name, choose, choice.description)->group(group));
    }
}

/// Adds --port, --speed and --simulate, for a command --transcript and --mask, too.
void addConnection(CLI::App& command, ConnectionOptions& options);

/// @throws UsageError for what means nothing without another option, or would overwrite what is played
void requireWhole(const ConnectionOptions& options);

/// Adds --decimals, for exports that are CSV files.
CLI::Option* addDecimals(CLI::App& command, std::optional<Decimals>& decimals);

/// @throws UsageError for decimals that mean nothing, as the path is that of no CSV file
void requireCsv(const std::optional<Decimals>& decimals, const std::string& path);

/// Refuses a file that would be read or written as two things: one of them would be lost.
/// @param paths an empty one stands for no file
void requireDifferentFiles(const std::vector<std::string>& paths);

} // namespace zint
