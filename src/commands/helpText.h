#pragma once

#include <CLI/App.hpp>
#include <CLI/FormatterFwd.hpp>
#include <string>

namespace zint {

/// How --help tells a command: lines of bounded length, names of values without attributes.
class HelpText final : public CLI::Formatter {
public:
    HelpText();
    std::string make_usage(const CLI::App* app, std::string name) const override;
    std::string make_subcommand(const CLI::App* sub) const override;
    std::string make_option_opts(const CLI::Option* option) const override;
    std::string make_option_desc(const CLI::Option* option) const override;
};

/// The help of a command, or of the program.
std::string helpOf(const CLI::App& command);

/// The help of the program and of all its commands.
std::string helpOfAll(const CLI::App& program);

} // namespace zint
