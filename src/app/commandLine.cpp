#include "app/commandLine.h"

#include "app/launcher.h"
#include "link/portDirectory.h"
#include "platform/text.h"

#include <QCommandLineParser>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace zint {
namespace {

const QString codesCommand = QStringLiteral("codes");

/// What is wrong with a command line.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

QCommandLineOption valued(const char* name, const char* description, const char* value)
{
    return {QLatin1String(name), QLatin1String(description), QLatin1String(value)};
}

QCommandLineOption flag(const char* name, const char* description)
{
    return {QLatin1String(name), QLatin1String(description)};
}

const QCommandLineOption portOption = valued(
    "port", "Port to use: com1 to com8, the path of a device (stands for com1=PATH), or comN=PATH.", "port");
const QCommandLineOption speedOption = valued("speed", "Line speed: 9600 or 38400 bits per second.", "speed");
const QCommandLineOption simulateOption = flag("simulate", "Put a simulated adapter and vehicle on com1.");
const QCommandLineOption clearOption =
    flag("clear", "With codes: erase the codes and test results in the vehicle.");
const QCommandLineOption yesOption =
    flag("yes", "With codes --clear: confirm that data in the vehicle be erased.");
const QCommandLineOption timeoutOption = valued(
    "timeout", "With codes: give up after so many seconds (default 120; 0 waits for ever).", "seconds");

void describe(QCommandLineParser& parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "\nOBD-II diagnostics with ELM327 adapters. Without a command, the launcher window opens.\n\n"
        "Commands:\n"
        "  codes  Print the MIL state, the stored codes and the readiness tests.\n\n"
        "Exit status: 0 when all went well, 1 when the exchange failed, 2 for a wrong command line."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({portOption, speedOption, simulateOption, clearOption, yesOption, timeoutOption});
    parser.addPositionalArgument(QStringLiteral("command"), QStringLiteral("codes"),
                                 QStringLiteral("[command]"));
}

ConnectionOptions parsePort(const QString& text)
{
    const QString name = text.section(u'=', 0, 0);
    const QString location = text.section(u'=', 1);
    if (const auto number = PortDirectory::numberOf(fromQt(name))) {
        if (text.contains(u'=') && location.isEmpty())
            throw UsageError("--port " + fromQt(text) + ": the path is missing");
        return {.portNumber = number, .portLocation = fromQt(location)};
    }
    if (text.isEmpty())
        throw UsageError("--port: give com1 to com8, or the path of a device");
    return {.portNumber = 1, .portLocation = fromQt(text)};
}

ConnectionOptions connectionOf(const QCommandLineParser& parser)
{
    ConnectionOptions options;
    if (parser.isSet(portOption))
        options = parsePort(parser.value(portOption));
    if (parser.isSet(simulateOption)) {
        if (options.portNumber.value_or(1) != 1 || !options.portLocation.empty())
            throw UsageError("--simulate puts the simulated vehicle on com1; use --port com" +
                             std::to_string(*options.portNumber) + "=simulated for another port");
        options.portNumber = 1;
        options.portLocation = PortDirectory::simulated;
    }
    if (parser.isSet(speedOption)) {
        const auto* const speed = std::ranges::find(lineSpeeds, fromQt(parser.value(speedOption)));
        if (speed == lineSpeeds.end())
            throw UsageError("--speed " + fromQt(parser.value(speedOption)) + ": give 9600 or 38400");
        options.speedPosition = static_cast<int>(speed - lineSpeeds.begin());
    }
    return options;
}

std::chrono::seconds timeoutOf(const QCommandLineParser& parser)
{
    bool isNumber = false;
    const int seconds = parser.value(timeoutOption).toInt(&isNumber);
    constexpr int mostSeconds = 86400;
    if (!isNumber || seconds < 0 || seconds > mostSeconds)
        throw UsageError("--timeout " + fromQt(parser.value(timeoutOption)) + ": give seconds, 0 to 86400");
    return std::chrono::seconds(seconds);
}

void readCommand(const QCommandLineParser& parser, CommandLine& line)
{
    const QStringList words = parser.positionalArguments();
    const bool codes = words == QStringList{codesCommand};
    if (!words.isEmpty() && !codes)
        throw UsageError("unknown command \"" + fromQt(words.join(u' ')) + "\"");
    if (codes)
        line.action = CommandLine::Action::reportCodes;
    for (const auto& [option, name] :
         {std::pair(&clearOption, "--clear"), {&yesOption, "--yes"}, {&timeoutOption, "--timeout"}}) {
        if (!codes && parser.isSet(*option))
            throw UsageError(std::string(name) + " goes with the command codes");
    }
    line.clearCodes = parser.isSet(clearOption);
    if (line.clearCodes && !parser.isSet(yesOption))
        throw UsageError(
            "--clear erases all diagnostic data in the vehicle; add --yes if that is what you want");
    if (parser.isSet(timeoutOption))
        line.timeout = timeoutOf(parser);
}

} // namespace

CommandLine CommandLine::parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    describe(parser);
    if (!parser.parse(arguments))
        return {.action = Action::refuse, .complaint = fromQt(parser.errorText())};
    if (parser.isSet(QStringLiteral("help")) || parser.isSet(QStringLiteral("help-all")))
        return {.action = Action::showHelp};
    if (parser.isSet(QStringLiteral("version")))
        return {.action = Action::showVersion};
    try {
        CommandLine line{.connection = connectionOf(parser)};
        readCommand(parser, line);
        return line;
    } catch (const UsageError& error) {
        return {.action = Action::refuse, .complaint = error.what()};
    }
}

std::string CommandLine::helpText()
{
    QCommandLineParser parser;
    describe(parser);
    return fromQt(parser.helpText());
}

} // namespace zint
