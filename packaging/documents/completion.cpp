#include "commands/commandParser.h"
#include "documents.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>

namespace zint {
namespace {

/// What goes before and behind the lists.
constexpr const char* head =
    R"(# Completes the commands, options and designs of zint-obd; elsewhere bash completes names of files.

_zint_obd() {
    local word=${COMP_WORDS[COMP_CWORD]} command="zint-obd" words="" files="" i
    for ((i = 1; i < COMP_CWORD; i++)); do
        case "$command ${COMP_WORDS[i]}" in
)";
constexpr const char* values = R"() command+=" ${COMP_WORDS[i]}" ;;
        esac
    done
    case "${COMP_WORDS[COMP_CWORD - 1]}" in
)";
constexpr const char* options = R"(    *)
        case "$command" in
)";
constexpr const char* foot = R"(        esac
        ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
    [ -n "$files" ] || return 0
    i=${#COMPREPLY[@]}
    mapfile -t -O "$i" COMPREPLY < <(compgen -f -X "!*.$files" -- "$word")
    [ "$i" = ${#COMPREPLY[@]} ] || compopt -o filenames 2>/dev/null
}

complete -o default -F _zint_obd zint-obd
)";

std::vector<const CLI::App*> withInner(const CLI::App& app)
{
    std::vector<const CLI::App*> all{&app};
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        const auto inner = withInner(*command);
        all.insert(all.end(), inner.begin(), inner.end());
    }
    return all;
}

/// The words that an option takes, between blanks; empty where bash completes files, or nothing helps.
std::string valuesOf(const CLI::Option& option)
{
    std::string words = option.get_type_name();
    if (words == "PORT")
        return "com1 com2 com3 com4 com5 com6 com7 com8";
    std::ranges::replace(words, '|', ' ');
    return words.find(' ') == std::string::npos ? "" : words;
}

/// All that may follow a command's name.
std::string wordsOf(const CLI::App& command)
{
    std::string words;
    for (const CLI::App* inner : command.get_subcommands([](const CLI::App*) { return true; }))
        words += inner->get_name() + " ";
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& name : option->get_lnames())
            words += "--" + name + " ";
    }
    return words.substr(0, words.size() - 1);
}

/// How the name of the file ends that a command takes; empty for none.
std::string filesOf(const CLI::App& command)
{
    const auto files =
        command.get_options([](const CLI::Option* option) { return option->get_positional(); });
    const std::string name = files.empty() ? "" : files.front()->get_name(true);
    return name.find('.') == std::string::npos ? "" : name.substr(name.rfind('.') + 1);
}

} // namespace

std::string bashCompletion(const CLI::App& program)
{
    std::string names;
    std::string lists;
    std::map<std::string, std::string> taken; // by the options that take a value
    for (const CLI::App* command : withInner(program)) {
        const std::string name = "\"" + nameOf(*command) + "\"";
        if (command != &program)
            names += (names.empty() ? "        " : " | ") + name;
        lists += "        " + name + ") words=\"" + wordsOf(*command) + "\" files=\"" + filesOf(*command) +
                 "\" ;;\n";
        for (const CLI::Option* option : command->get_options()) {
            if (option->get_items_expected_max() > 0 && !option->get_positional())
                taken[option->get_name()] = valuesOf(*option);
        }
    }
    std::string cases;
    std::string others;
    for (const auto& [name, words] : taken) {
        if (words.empty())
            others += (others.empty() ? "    " : " | ") + name;
        else
            cases += "    " + name + ") words=\"" + words + "\" ;;\n";
    }
    cases += others + ") ;;\n";
    return head + names + values + cases + options + lists + foot;
}

} // namespace zint
