#pragma once

#include "connection/connectionOptions.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

namespace zint {

/// The program's command line. All texts are UTF-8.
class CommandLine {
public:
    CommandLine();
    ~CommandLine();

    /// The program with all its commands and options, described.
    const CLI::App& program() const { return *program_; }

    /// Whether the windows may be asked for: there is no command, and no help is wanted. An option that is
    /// not known may be one of the toolkit's, for them. @param arguments without the program's name
    bool mayWantWindows(const std::vector<std::string>& arguments) const;

    /// Whether what is asked for draws, though it shows no window. @param arguments as above
    bool draws(const std::vector<std::string>& arguments) const;

    /// Reads the arguments, once. @param arguments without the program's name. @throws UsageError
    void parse(const std::vector<std::string>& arguments);

    /// What is asked for: a command, or help. Tells what a command throws, returns the exit status, and may
    /// need an application object. Empty: the windows are asked for.
    std::function<int()> run;

    StartOptions start; ///< of the windows

    std::string help = "zint-obd --help"; ///< what tells the options of the command that is asked for

private:
    template <typename Options>
    void add(CLI::App& parent, const char* name, const char* description, int (*run)(const Options&));
    void addCommands();
    void addDtcCommands();
    void addParametersCommands();

    std::unique_ptr<CLI::App> program_;
};

} // namespace zint
