#include "app/commandSession.h"

#include "app/connectionSetup.h"
#include "platform/console.h"

#include <QCoreApplication>

#include <exception>
#include <iostream>
#include <utility>

namespace zint {
namespace {

std::size_t progressLength = 0; ///< of what the terminal shows
bool isLineOpen = false;        ///< the terminal shows the beginning of a line of standard output

} // namespace

void showProgress(const std::string& text)
{
    if ((text.empty() && progressLength == 0) || !isErrorOutputTerminal())
        return;
    if (std::exchange(isLineOpen, false))
        std::cerr << '\n'; // the progress would overwrite it
    const std::size_t rest = progressLength > text.size() ? progressLength - text.size() : 0;
    std::cerr << '\r' << text << std::string(rest, ' ') << (text.empty() ? "\r" : "") << std::flush;
    progressLength = text.size();
}

void complain(std::string text)
{
    showProgress({});
    std::erase(text, '\r');
    std::cerr << "zint-obd: " << text << std::endl;
}

int printOut(const std::string& text)
{
    showProgress({});
    std::cout << text << std::flush;
    if (!text.empty())
        isLineOpen = !text.ends_with('\n') && isOutputTerminal();
    if (std::cout)
        return exitStatus::success;
    complain("the report could not be written to standard output");
    return exitStatus::failure;
}

int telling(const std::function<int()>& command)
{
    try {
        return command();
    } catch (const std::exception& error) {
        complain(error.what());
        return exitStatus::failure;
    }
}

std::string noDatabaseText(const std::string& path)
{
    return "there is no database of code descriptions \"" + path + "\"; zint-obd dtc setup makes one";
}

void PrintedBox::append(const std::string& text)
{
    std::string printed = text;
    std::erase(printed, '\r');
    hasFailed = hasFailed || printOut(printed) != exitStatus::success;
}

void CommandPrompts::message(const std::string& text, const std::string& /*title*/, const std::string& reason)
{
    complain(reason.empty() ? text : text + "\r\n" + reason);
    hasComplained = true;
}

std::optional<std::string> CommandPrompts::input(const std::string& /*text*/, const std::string& /*title*/,
                                                 const std::string& /*initial*/)
{
    return std::nullopt;
}

std::optional<std::size_t> CommandPrompts::choose(const std::string& /*text*/, const std::string& /*title*/,
                                                  const std::vector<std::string>& /*lines*/)
{
    return std::nullopt;
}

bool CommandPrompts::confirm(const std::string& /*text*/, const std::string& /*title*/) { return true; }

CommandSession::CommandSession(const ConnectionOptions& options)
{
    gate.onError = [this](const std::string& text, const std::string& reason) {
        prompts.message(text, {}, reason);
        QCoreApplication::quit();
    };
    applyForThisRun(options, ports_);
    Design design; // the launcher sets it to the default one
    Launcher launcher(settings_, ports_, prompts, values, design, launcherSystem());
    applyForThisRun(options, launcher);
    launcher.load();
    prompts.hasComplained = false; // a setting that can't be used is no failure of what follows
    connection_ = launcher.connection();
}

Patience::Patience(CommandSession& session, std::chrono::seconds timeout)
    : timeout_(timeout), timer_(session.gate)
{
    timer_.onTick = [this, &session] {
        session.prompts.message("the adapter has not answered within " + std::to_string(timeout_.count()) +
                                " seconds");
        QCoreApplication::quit();
    };
}

void Patience::begin()
{
    timer_.setInterval(timeout_);
    timer_.setEnabled(timeout_.count() > 0);
}

} // namespace zint
