#include "commands/terminalCommand.h"

#include "commands/commandSession.h"
#include "commands/options.h"
#include "process/console.h"
#include "terminal/terminal.h"

#include <QCoreApplication>

#include <cstdint>
#include <deque>
#include <memory>

namespace zint {
namespace {

/// The terminal and all that it needs.
///
/// Commands of a file or a pipe wait until the adapter has answered the one before; what a user types goes
/// out at once, so that it can end an answer that would never end.
class TerminalRun {
public:
    explicit TerminalRun(const TerminalCommandOptions& options)
        : options_(options), session_(options.connection, options.timeout)
    {
        terminal_.setOptions({.base = options.base, .mode = OutputMode::append});
        terminal_.sendNothingAfterTimeout();
        terminal_.onPrompt = [this] { prompted(); };
        terminal_.onChanged = [this] { watch(); };
    }

    int run()
    {
        const Interruption interruption([this] { session_.gate.run([] { QCoreApplication::quit(); }); });
        session_.gate.run([this] { open(); });
        if (terminal_.isOpen()) {
            const InputLines input([this](const std::string& command) { enter(command); },
                                   [this] { session_.gate.run([this] { end(); }); });
            QCoreApplication::exec();
        }
        const bool isWhole = terminal_.isOpen() && !session_.prompts.hasComplained && !box_.hasFailed;
        session_.gate.run([this] { terminal_.unload(); });
        box_.endLine();
        const bool isAnswered = commands_.empty() && (isPrompted_ || isTyped_);
        if (isWhole && !isAnswered)
            complain("ended before the adapter had answered all commands");
        return isWhole && isAnswered && !hasFailed_ ? exitStatus::success : exitStatus::failure;
    }

private:
    void open()
    {
        terminal_.pressOpenCom();
        beginWaiting();
    }

    /// A user who types sees that nothing comes, and ends the program.
    void beginWaiting()
    {
        isPrompted_ = false;
        if (!isTyped_)
            session_.patience.begin();
    }

    void enter(const std::string& command)
    {
        session_.gate.run([this, command] {
            commands_.push_back(command);
            sendNext();
        });
    }

    void end()
    {
        isEnded_ = true;
        sendNext();
    }

    void prompted()
    {
        isPrompted_ = true;
        session_.patience.end();
        watch(); // what the next send would take from the status
        sendNext();
    }

    void sendNext()
    {
        while (terminal_.isReady() && !commands_.empty() && (isPrompted_ || isTyped_)) {
            beginWaiting();
            terminal_.setCommand(commands_.front());
            commands_.pop_front();
            terminal_.pressSendCom();
        }
        if (isEnded_ && commands_.empty() && isPrompted_)
            QCoreApplication::quit();
    }

    void watch()
    {
        const std::int64_t errors = terminal_.counters().totalErrors;
        if (!terminal_.isOpen() && !session_.prompts.hasComplained) {
            session_.prompts.message(terminal_.lastFailure());
        } else if (errors > errorsTold_ && !session_.prompts.hasComplained) {
            complain(terminal_.panel().statusBox); // a number that is too large, and no reason to stop
            hasFailed_ = true;
        }
        errorsTold_ = errors;
        if (!terminal_.isOpen() || session_.prompts.hasComplained || box_.hasFailed)
            QCoreApplication::quit();
    }

    const TerminalCommandOptions& options_;
    VehicleSession session_;
    PrintedBox box_;
    Terminal terminal_{{session_.line(), session_.clock, session_.prompts, box_}};
    std::deque<std::string> commands_; ///< not sent yet
    const bool isTyped_ = isInputTerminal();
    bool isPrompted_ = false; ///< the adapter waits for a command
    bool isEnded_ = false;    ///< there will be no more commands
    bool hasFailed_ = false;  ///< something that did not end the run
    std::int64_t errorsTold_ = 0;
};

} // namespace

void TerminalCommandOptions::describe(CLI::App& command)
{
    addConnection(command, connection);
    addTimeout(command, timeout,
               "Give up when a reply takes so many seconds, unless a user types the commands (default 120; 0 "
               "waits for ever).");
    addChoices<NumberBase>(
        command, "Numbers", base,
        {{"--hex", NumberBase::hexadecimal, "Print the numbers of replies in hexadecimal (the default)."},
         {"--dec", NumberBase::decimal, "In decimal."},
         {"--oct", NumberBase::octal, "In octal."}});
}

int runTerminalCommand(const TerminalCommandOptions& options) { return TerminalRun(options).run(); }

} // namespace zint
