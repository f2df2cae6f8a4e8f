#include "shared/module1.h"
#include "shared/programInfo.h"
#include "sim/loopbackServer.h"
#include "sim/pseudoTerminal.h"
#include "sim/simulatedAdapter.h"
#include "sim/simulationArguments.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <exception>
#include <getopt.h>
#include <iostream>
#include <optional>
#include <poll.h>
#include <signal.h> // NOLINT(modernize-deprecated-headers): <csignal> has no sigaction
#include <string>
#include <system_error>
#include <vector>

namespace zint {
namespace {

constexpr int usageError = 2;

struct CommandLine {
    std::string answer; ///< is printed and ends the program; empty: it serves
    std::string link;   ///< empty: none
    std::optional<int> tcpPort;
    SimulationOptions options = SimulationOptions::realistic();
};

struct OwnArgument {
    const char* name;
    const char* valueName;
    const char* help;
};

constexpr std::array<OwnArgument, 4> ownArguments{{
    {"link", "PATH", "makes a symbolic link to the port while the program runs"},
    {"tcp", "PORT", "serves 127.0.0.1:PORT, too, one client at a time; 0: any port, which is printed"},
    {"help", "", "shows this text"},
    {"version", "", "shows the version"},
}};

std::string helpText()
{
    std::string text =
        "Usage: zint-sim [OPTION]...\n\n"
        "Simulates an OBD adapter and a vehicle on a pseudo-terminal, prints the terminal's path, "
        "and serves\n"
        "it until it is interrupted.\n\n";
    for (const SimulationArgument& argument : simulationArguments())
        text += argumentHelp(argument.name, argument.valueName, argument.help);
    text += '\n';
    for (const OwnArgument& argument : ownArguments)
        text += argumentHelp(argument.name, argument.valueName, argument.help);
    return text;
}

std::vector<option> optionTable()
{
    std::vector<option> table;
    const auto add = [&table](const char* name, bool hasValue) {
        table.push_back({name, hasValue ? required_argument : no_argument, nullptr, 0});
    };
    // the names are literals, so they end in a NUL
    for (const SimulationArgument& argument : simulationArguments())
        add(argument.name.data(), !argument.valueName.empty());
    for (const OwnArgument& argument : ownArguments)
        add(argument.name, *argument.valueName != '\0');
    table.push_back({});
    return table;
}

int tcpPort(const std::string& text)
{
    constexpr int most = 65535;
    const std::optional<int> port = integerIn(text);
    if (!port || *port < 0 || *port > most)
        throw ArgumentError("\"" + text + "\" is no port from 0 to " + std::to_string(most));
    return *port;
}

void apply(CommandLine& commandLine, const std::string& name, const std::string& value)
{
    if (name == "help") {
        commandLine.answer = helpText();
    } else if (name == "version") {
        commandLine.answer = "zint-sim " + programInfo().version() + '\n';
    } else if (name == "link") {
        commandLine.link = value;
    } else if (name == "tcp") {
        commandLine.tcpPort = tcpPort(value);
    } else {
        applySimulationArgument(commandLine.options, name, value);
    }
}

/// @throws ArgumentError; an empty one when the user has been told already
CommandLine parse(int argumentCount, char** arguments)
{
    CommandLine commandLine;
    const std::vector<option> table = optionTable();
    int index = 0;
    for (int result = 0; (result = getopt_long(argumentCount, arguments, "", table.data(), &index)) != -1;) {
        if (result != 0)
            throw ArgumentError("");
        const std::string name = table[static_cast<std::size_t>(index)].name;
        try {
            apply(commandLine, name, optarg == nullptr ? "" : optarg);
        } catch (const ArgumentError& error) {
            throw ArgumentError("--" + name + ": " + error.what());
        }
    }
    if (optind < argumentCount)
        throw ArgumentError("\"" + std::string(arguments[optind]) + "\" is no option");
    return commandLine;
}

volatile sig_atomic_t stopRequested = 0;

void requestStop(int) { stopRequested = 1; }

/// Lets the signals that end the program in while it waits, and only then.
class StopSignals {
public:
    StopSignals()
    {
        struct sigaction action = {};
        action.sa_handler = requestStop;
        sigset_t blocked;
        sigemptyset(&blocked);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
            sigaddset(&blocked, signal);
            sigaction(signal, &action, nullptr);
        }
        sigprocmask(SIG_BLOCK, &blocked, &whileWaiting_);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP})
            sigdelset(&whileWaiting_, signal);
    }

    const sigset_t& whileWaiting() const { return whileWaiting_; }

private:
    sigset_t whileWaiting_{};
};

using Time = SimulatedAdapter::Time;

Time sinceStart()
{
    static const auto start = std::chrono::steady_clock::now();
    return std::chrono::duration_cast<Time>(std::chrono::steady_clock::now() - start);
}

/// Waits for the program on the other side, for a signal, or until the adapter has something to do.
void waitFor(const PseudoTerminal& terminal, const std::optional<LoopbackServer>& server,
             std::optional<Time> due, const StopSignals& signals)
{
    constexpr Time untilNextLook = std::chrono::milliseconds(10); // for a program that opens the port
    constexpr Time longest = std::chrono::hours(1);
    const Time limit = terminal.isOpen() ? longest : untilNextLook;
    const Time left = due ? std::clamp(*due - sinceStart(), Time{0}, limit) : limit;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
    const timespec time{.tv_sec = seconds.count(),
                        .tv_nsec = std::chrono::nanoseconds(left - seconds).count()};
    const auto watch = [](int descriptor) {
        return pollfd{.fd = descriptor, .events = POLLIN, .revents = 0};
    };
    std::array others{watch(terminal.isOpen() ? terminal.descriptor() : -1),
                      watch(server ? server->descriptor() : -1)};
    if (ppoll(others.data(), others.size(), &time, &signals.whileWaiting()) < 0 && errno != EINTR)
        throw std::system_error(errno, std::generic_category(), "waiting");
}

void serve(const CommandLine& commandLine)
{
    const StopSignals signals;
    Vehicle vehicle(commandLine.options.vehicle);
    SimulatedAdapter adapter(vehicle, commandLine.options.adapter);
    PseudoTerminal terminal;
    if (commandLine.options.adapter.keepsUnread)
        terminal.holdOpen();
    std::optional<TemporaryLink> link;
    if (!commandLine.link.empty())
        link.emplace(commandLine.link, terminal.path());
    std::optional<LoopbackServer> server;
    if (commandLine.tcpPort)
        server.emplace(*commandLine.tcpPort);
    std::cout << terminal.path() << std::endl; // who reads it waits for it
    if (server)
        std::cout << "tcp:127.0.0.1:" << server->port() << std::endl;
    while (stopRequested == 0 && !adapter.disconnected()) {
        waitFor(terminal, server, adapter.nextDue(), signals);
        const std::string text = terminal.read() + (server ? server->read() : "");
        if (terminal.takeOpening() || (server && server->takeClient()))
            adapter.portOpened();
        adapter.setPortSpeed(terminal.bitsPerSecond());
        adapter.receive(text, sinceStart());
        const std::string reply = adapter.take(sinceStart());
        if (server && server->hasClient())
            server->write(reply);
        else
            terminal.write(reply);
    }
    if (adapter.disconnected())
        terminal.waitUntilRead(std::chrono::seconds(1));
}

void run(const CommandLine& commandLine)
{
    if (commandLine.answer.empty())
        serve(commandLine);
    else
        std::cout << commandLine.answer;
}

} // namespace
} // namespace zint

int main(int argumentCount, char** arguments)
{
    try {
        zint::run(zint::parse(argumentCount, arguments));
        return 0;
    } catch (const zint::ArgumentError& error) {
        if (*error.what() != '\0')
            std::cerr << "zint-sim: " << error.what() << '\n';
        std::cerr << "Try \"zint-sim --help\".\n";
        return zint::usageError;
    } catch (const std::exception& error) {
        std::cerr << "zint-sim: " << error.what() << '\n';
        return 1;
    }
}
