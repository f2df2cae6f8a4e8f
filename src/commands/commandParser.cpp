#include "commands/commandParser.h"

#include "commands/usageError.h"
#include "shared/module1.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string_view>

namespace zint {
namespace {

using Arguments = std::vector<std::string>;

std::vector<const CLI::App*> commandsIn(const CLI::App& app)
{
    return app.get_subcommands([](const CLI::App*) { return true; });
}

/// The words that a command takes.
std::vector<const CLI::Option*> wordsOf(const CLI::App& command)
{
    return command.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

/// An option of the program or of any command; null when none has it.
const CLI::Option* findOption(const CLI::App& app, const std::string& name)
{
    if (const CLI::Option* option = app.get_option_no_throw(name))
        return option;
    for (const CLI::App* command : commandsIn(app)) {
        if (const CLI::Option* option = findOption(*command, name))
            return option;
    }
    return nullptr;
}

std::string joined(const Arguments& texts, const char* between)
{
    std::string all;
    for (const std::string& text : texts)
        all += (&text == &texts.front() ? "" : between) + text;
    return all;
}

/// Without the program's name.
std::string shortened(const std::string& usage) { return usage.substr(usage.find(' ') + 1); }

/// Sorts one argument after the other.
class Sorter {
public:
    explicit Sorter(const CLI::App& program) : program_(program) {}

    SortedArguments sort(const Arguments& arguments)
    {
        for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
            if (onlyWords_ || !argument->starts_with('-') || argument->size() == 1)
                sorted_.words.push_back(*argument);
            else if (*argument == "--")
                onlyWords_ = true;
            else if (argument->starts_with("--"))
                takeOption(argument, arguments.end());
            else
                takeLetters(*argument);
        }
        return sorted_;
    }

private:
    /// The option as the command has it: what one takes as a flag may have a value with another one. A
    /// command that has not come yet is looked for behind the option.
    const CLI::Option* optionOf(const std::string& name, const Arguments& behind) const
    {
        const auto isCommand = [this](const std::string& word) {
            const auto commands = commandsIn(program_);
            return std::ranges::find(commands, word, &CLI::App::get_name) != commands.end();
        };
        const CLI::App* command = &commandOf(program_, sorted_.words);
        if (command == &program_)
            command = &commandOf(program_, {std::ranges::find_if(behind, isCommand), behind.end()});
        const CLI::Option* const own =
            program_.get_option_no_throw(name) == nullptr ? command->get_option_no_throw(name) : nullptr;
        return own != nullptr ? own : findOption(program_, name);
    }

    void takeOption(Arguments::const_iterator& argument, Arguments::const_iterator end)
    {
        const std::string name = argument->substr(0, argument->find('='));
        const CLI::Option* const option = optionOf(name, {argument + 1, end});
        if (option == nullptr)
            throw UsageError("unknown option " + name);
        const bool hasValue = name != *argument;
        if (option->get_items_expected_max() == 0) {
            if (hasValue)
                throw UsageError(name + " takes no value");
            sorted_.options.push_back({option->get_name(), {}});
            return;
        }
        if (!hasValue && argument + 1 == end)
            throw UsageError("the value of " + name + " is missing");
        sorted_.options.push_back({name, hasValue ? argument->substr(name.size() + 1) : *++argument});
    }

    void takeLetters(const std::string& letters)
    {
        for (const char letter : letters.substr(1)) {
            const std::string name{'-', letter};
            const CLI::Option* const option = findOption(program_, name);
            if (option == nullptr)
                throw UsageError("unknown option " + letters);
            sorted_.options.push_back({option->get_name(), {}});
        }
    }

    const CLI::App& program_;
    SortedArguments sorted_;
    bool onlyWords_ = false; ///< behind "--"
};

/// @return how many words name the command
std::size_t depthOf(const CLI::App& command)
{
    return command.get_parent() == nullptr ? 0 : depthOf(*command.get_parent()) + 1;
}

/// Whether a word in a command's place is a file for the windows. Any other one is a mistyped command.
bool isForWindows(const CLI::App& command, const std::string& word)
{
    return command.get_parent() == nullptr && (upperCase(word).ends_with(".OBC") || fileExists(word));
}

void requireCommand(const CLI::App& command, const Arguments& words)
{
    if (words.empty() || (command.get_parent() != nullptr && commandsIn(command).empty()) ||
        isForWindows(command, words.front()))
        return;
    Arguments usages;
    for (const CLI::App* known : allCommands(command))
        usages.push_back(shortened(usageOf(*known)));
    throw UsageError("unknown command \"" + joined(words, " ") + "\"; there are: " + joined(usages, ", "));
}

/// How many words a command takes at most. CLI11 would try the rest with the program.
std::ptrdiff_t mostWords(const CLI::App& command)
{
    std::ptrdiff_t most = 0;
    for (const CLI::Option* word : wordsOf(command))
        most += word->get_items_expected_max();
    return most;
}

void requireTaker(const CLI::App& program, const CLI::App& command,
                  const std::vector<SortedArguments::Option>& options)
{
    for (const auto& [name, value] : options) {
        if (command.get_option_no_throw(name) != nullptr)
            continue;
        Arguments takers;
        for (const CLI::App* known : allCommands(program)) {
            if (known->get_option_no_throw(name) != nullptr)
                takers.push_back(shortened(nameOf(*known)));
        }
        throw UsageError(name + (takers.empty() ? " goes without a command"
                                                : " goes with the command " + joined(takers, " or ")));
    }
}

} // namespace

SortedArguments sortArguments(const CLI::App& program, const Arguments& arguments)
{
    return Sorter(program).sort(arguments);
}

const CLI::App& commandOf(const CLI::App& program, const Arguments& words)
{
    const CLI::App* command = &program;
    for (const std::string& word : words) {
        const auto inside = commandsIn(*command);
        const auto found = std::ranges::find(inside, word, &CLI::App::get_name);
        if (found == inside.end())
            break;
        command = *found;
    }
    return *command;
}

void parse(CLI::App& program, const SortedArguments& arguments)
{
    const CLI::App& command = commandOf(program, arguments.words);
    requireCommand(command, arguments.words);
    requireTaker(program, command, arguments.options);
    const auto words = arguments.words.begin() + static_cast<std::ptrdiff_t>(depthOf(command));
    Arguments ordered(arguments.words.begin(), words);
    for (const auto& [name, value] : arguments.options) {
        ordered.push_back(name);
        ordered.insert(ordered.end(), value ? 1 : 0, value.value_or(""));
    }
    if (words != arguments.words.end()) {
        ordered.emplace_back("--");
        ordered.insert(ordered.end(), words, arguments.words.end());
    }
    std::ranges::reverse(ordered); // as CLI11 wants them
    try {
        if (std::find(words, arguments.words.end(), std::string()) != arguments.words.end() ||
            arguments.words.end() - words > mostWords(command))
            throw CLI::ExtrasError({});
        program.parse(std::move(ordered));
    } catch (const CLI::ParseError&) {
        throw UsageError("wrong words after \"" + shortened(nameOf(command)) +
                         "\"; the command is: " + usageOf(command));
    }
}

std::string nameOf(const CLI::App& command)
{
    return (command.get_parent() == nullptr ? "" : nameOf(*command.get_parent()) + " ") + command.get_name();
}

std::string usageOf(const CLI::App& command)
{
    std::string usage = nameOf(command);
    for (const CLI::Option* word : wordsOf(command))
        usage += " " + (word->get_required() ? word->get_name(true) : "[" + word->get_name(true) + "]") +
                 (word->get_items_expected_max() > 1 ? "..." : "");
    return usage;
}

std::vector<const CLI::App*> allCommands(const CLI::App& program)
{
    std::vector<const CLI::App*> all;
    for (const CLI::App* command : commandsIn(program)) {
        const auto inside = allCommands(*command);
        all.insert(all.end(), inside.begin(), inside.end());
        if (inside.empty())
            all.push_back(command);
    }
    return all;
}

} // namespace zint
