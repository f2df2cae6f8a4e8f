#include "commands/commandSession.h"

#include "connection/connectionSetup.h"
#include "platform/text.h"
#include "process/console.h"
#include "shared/module1.h"

#include <QCoreApplication>

#include <algorithm>
#include <exception>
#include <iostream>
#include <utility>

namespace zint {
namespace {

std::size_t progressLength = 0;  ///< of what the terminal shows
bool isLineOpen = false;         ///< the terminal shows the beginning of a line of standard output
bool hasRecordingFailed = false; ///< the transcript that was asked for is not whole

/// How many bytes the character has that a text begins with; 0 when a terminal does not show it.
std::size_t visibleLength(std::string_view text)
{
    const auto lead = static_cast<unsigned char>(text.front());
    if ((lead >= ' ' && lead < 0x7F) || lead == '\n' || lead == '\t')
        return 1;
    if (text.starts_with("\r\n"))
        return 2;
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    const QList<uint> character = toQt(text.substr(0, length)).toUcs4();
    const bool isText = character.size() == 1 && character[0] != QChar::ReplacementCharacter;
    return isText && lead >= 0xC0 && QChar::isPrint(character[0]) ? length : 0;
}

/// The menus are those of the windows.
std::string withoutHelpMenu(const std::string& text)
{
    constexpr std::string_view advice = " under Help.";
    return text.ends_with(advice) ? text.substr(0, text.rfind(". ") + 1) : text;
}

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
    std::cerr << "zint-obd: " << (isErrorOutputTerminal() ? visibleText(text) : text) << std::endl;
}

std::string visibleText(std::string_view text)
{
    std::string visible;
    while (!text.empty()) {
        const std::size_t length = visibleLength(text);
        if (length > 0)
            visible += text.substr(0, length);
        else
            visible += "\\x" + hexText(static_cast<unsigned char>(text.front()), 2);
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return visible;
}

std::string secondsText(std::chrono::seconds time)
{
    return std::to_string(time.count()) + (time.count() == 1 ? " second" : " seconds");
}

int printOut(const std::string& text)
{
    showProgress({});
    std::cout << (isOutputTerminal() ? visibleText(text) : text) << std::flush;
    if (!text.empty())
        isLineOpen = !text.ends_with('\n') && isOutputTerminal();
    if (std::cout)
        return exitStatus::success;
    complain("the report could not be written to standard output");
    return exitStatus::failure;
}

int printBold(const std::string& text)
{
    const bool isBold = !text.empty() && isOutputBoldTerminal();
    std::cout << (isBold ? "\x1B[1m" : "");
    const int status = printOut(text);
    std::cout << (isBold ? "\x1B[0m" : "") << std::flush;
    return status;
}

int telling(const std::function<int()>& command)
{
    try {
        const int status = command();
        return status == exitStatus::success && hasRecordingFailed ? exitStatus::failure : status;
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
    isLineOpen_ = !hasFailed && !printed.ends_with('\n');
}

void PrintedBox::endLine()
{
    if (isLineOpen_)
        append("\n");
}

void CommandPrompts::message(const std::string& text, const std::string& /*title*/, const std::string& reason)
{
    complain(withoutHelpMenu(text) + (reason.empty() ? "" : "\r\n" + reason));
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
    record(options);
}

/// A file that can't be written is told before the vehicle is asked; later the exchange goes on.
void CommandSession::record(const ConnectionOptions& options)
{
    using Identity = WireRecord::Identity;
    if (options.transcriptPath.empty())
        return;
    vehiclePorts_.record().onEnded = [](const std::string& why) {
        complain(why);
        hasRecordingFailed = true;
    };
    vehiclePorts_.record().start(options.transcriptPath,
                                 options.isIdentityLeftOut ? Identity::leftOut : Identity::kept);
}

void CommandSession::tellConnection() const
{
    if (!isErrorOutputTerminal())
        return;
    using Kind = PortLocation::Kind;
    const std::string device = connection_.kind == Kind::nothing ? portName(connection_.port)
                               : connection_.kind == Kind::device || connection_.kind == Kind::network
                                   ? connection_.device
                                   : "the " + connection_.device;
    std::cerr << "trying " << visibleText(device) << connection_.speedText() << "..." << std::endl;
}

Patience::Patience(CommandSession& session, std::chrono::seconds timeout, std::string complaint)
    : timeout_(timeout), complaint_(std::move(complaint)), timer_(session.gate)
{
    timer_.onTick = [this, &session] {
        session.prompts.message(complaint_ + secondsText(timeout_));
        QCoreApplication::quit();
    };
}

void Patience::begin()
{
    timer_.setInterval(timeout_);
    timer_.setEnabled(timeout_.count() > 0);
}

} // namespace zint
