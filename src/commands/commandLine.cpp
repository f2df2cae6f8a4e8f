#include "commands/commandLine.h"

#include "launcher/launcher.h"
#include "link/portDirectory.h"
#include "platform/text.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>
#include <vector>

namespace zint {
namespace {

/// What is wrong with a command line.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The word or words on the command line that say what to do, and what follows them.
struct Command {
    const char* name; ///< empty: the windows
    CommandLine::Action action;
    std::vector<std::string CommandLine::*> files;
    const char* usage;
    const char* description;
    std::vector<std::string> CommandLine::*list = nullptr; ///< of further words, at least one

    QStringList words() const { return QString(QLatin1String(name)).split(u' ', Qt::SkipEmptyParts); }
};

const Command windows{"", CommandLine::Action::showWindows, {}, "", ""};

const std::array commands{
    Command{"codes",
            CommandLine::Action::reportCodes,
            {},
            "codes",
            "Print the MIL state, the stored codes and the readiness tests."},
    Command{"poll",
            CommandLine::Action::poll,
            {&CommandLine::designPath},
            "poll DESIGN.obc",
            "Poll a design's events, print a summary, write the files asked for."},
    Command{"export",
            CommandLine::Action::exportLog,
            {&CommandLine::logPath, &CommandLine::exportPath},
            "export LOG.log OUT.txt",
            "Turn a saved data log into a table for spreadsheets."},
    Command{"terminal",
            CommandLine::Action::terminal,
            {},
            "terminal",
            "Send each line of standard input to the adapter, print what it answers."},
    Command{"scan",
            CommandLine::Action::scan,
            {},
            "scan",
            "Ask for a range of modes and PIDs, print what is answered."},
    Command{"dtc setup",
            CommandLine::Action::setUpDescriptions,
            {},
            "dtc setup",
            "Make the database of code descriptions from those that come with the program."},
    Command{"dtc lookup",
            CommandLine::Action::lookUpCodes,
            {},
            "dtc lookup CODE...",
            "Print the descriptions and notes of codes.",
            &CommandLine::codes},
    Command{"dtc import",
            CommandLine::Action::importDescriptions,
            {&CommandLine::textPath},
            "dtc import FILE",
            "Add the descriptions in a text file to the database."},
    Command{"dtc export",
            CommandLine::Action::exportDescriptions,
            {&CommandLine::textPath},
            "dtc export FILE",
            "Write all descriptions into a text file; - is standard output."},
};

/// An option: with which commands it goes, and what it means.
struct Option {
    const char* name;
    const char* valueName; ///< empty: the option has no value
    const char* description;
    QStringList commands; ///< names
    void (*read)(CommandLine& line, const QString& value);

    QCommandLineOption forParser() const
    {
        return {QLatin1String(name), QLatin1String(description), QLatin1String(valueName)};
    }
};

int number(const char* option, const QString& text, const char* what, int least, int most)
{
    bool isNumber = false;
    const int value = text.toInt(&isNumber);
    if (isNumber && value >= least && value <= most)
        return value;
    throw UsageError(std::string(option) + " " + fromQt(text) + ": give " + what + ", " +
                     std::to_string(least) + " to " + std::to_string(most));
}

std::string fileName(const char* option, const QString& text)
{
    if (text.isEmpty())
        throw UsageError(std::string(option) + ": the file's name is missing");
    return fromQt(text);
}

constexpr int mostSeconds = 86400;
constexpr int mostLoops = 100000;

/// Whether a name is made as those of the ports, whatever its number.
bool looksLikePort(const QString& name)
{
    static const QRegularExpression pattern(QStringLiteral("^com\\d+$"),
                                            QRegularExpression::CaseInsensitiveOption);
    return pattern.match(name).hasMatch();
}

void readPort(CommandLine& line, const QString& text)
{
    const QString name = text.section(u'=', 0, 0);
    const QString location = text.section(u'=', 1);
    ConnectionOptions& options = line.connection;
    options.portNumber = PortDirectory::numberOf(fromQt(name));
    if (options.portNumber) {
        if (text.contains(u'=') && location.isEmpty())
            throw UsageError("--port " + fromQt(text) + ": the path is missing");
        options.portLocation = fromQt(location);
        return;
    }
    if (looksLikePort(name))
        throw UsageError("--port " + fromQt(text) +
                         ": there are com1 to com8; com1=PATH lets one of them stand for a device");
    if (text.isEmpty())
        throw UsageError("--port: give com1 to com8, or the path of a device");
    options.portNumber = PortNumber{1};
    options.portLocation = fromQt(text);
}

void readSimulate(CommandLine& line, const QString& /*value*/)
{
    ConnectionOptions& options = line.connection;
    if (options.portNumber.value_or(PortNumber{1}) != PortNumber{1} || !options.portLocation.empty())
        throw UsageError("--simulate puts the simulated vehicle on com1; use --port " +
                         portName(*options.portNumber) + "=simulated for another port");
    options.portNumber = PortNumber{1};
    options.portLocation = PortDirectory::simulated;
}

void readSpeed(CommandLine& line, const QString& text)
{
    const auto* const speed =
        std::ranges::find(lineSpeeds, fromQt(text), [](int bits) { return std::to_string(bits); });
    if (speed == lineSpeeds.end())
        throw UsageError("--speed " + fromQt(text) + ": give 9600 or 38400");
    line.connection.speedPosition = static_cast<int>(speed - lineSpeeds.begin());
}

std::string accepted(const char* option, const QString& value, const CheckedBox& box)
{
    if (!box.complaint.empty())
        throw UsageError(std::string(option) + " " + fromQt(value) + ": " + box.complaint);
    return box.text;
}

/// Reads "A-B", or "A" for the range from A to A.
void readRange(const char* option, const QString& text, CheckedBox (*check)(std::string_view),
               std::string& start, std::string& stop)
{
    const std::string first = fromQt(text.section(u'-', 0, 0));
    start = accepted(option, text, check(first));
    stop = text.contains(u'-') ? accepted(option, text, check(fromQt(text.section(u'-', 1)))) : start;
    const bool isOpen = check == checkPid && scanNumber(stop) == 0; // 0 stands for no last PID
    if (!isOpen && scanNumber(stop) < scanNumber(start))
        throw UsageError(std::string(option) + " " + fromQt(text) + ": the range ends before it begins");
}

bool isNothing(const QString& text) { return text.isEmpty() || text == u"none"; }

void readPid(CommandLine& line, const QString& text)
{
    if (isNothing(text)) // which the check of a box refuses
        line.scan.pidStart = line.scan.pidStop = {};
    else
        readRange("--pid", text, checkPid, line.scan.pidStart, line.scan.pidStop);
}

void readSuffix(CommandLine& line, const QString& text)
{
    line.scan.cmdSuffix =
        isNothing(text) ? std::string() : accepted("--suffix", text, checkSuffix(fromQt(text)));
}

void readFilter(CommandLine& line, const QString& text)
{
    static const std::array filters{
        std::pair{u"all", ScanFilter::all},
        std::pair{u"valid", ScanFilter::valid},
        std::pair{u"nonzero", ScanFilter::validNonZero},
        std::pair{u"data", ScanFilter::exceptNoData},
    };
    const auto* const found =
        std::ranges::find_if(filters, [&](const auto& filter) { return text == filter.first; });
    if (found == filters.end())
        throw UsageError("--show " + fromQt(text) + ": give all, valid, nonzero or data");
    line.filter = found->second;
}

/// All options but --help and --version, in the order in which they are read.
const std::vector<Option>& options()
{
    static const QStringList connecting{QString(), QStringLiteral("codes"), QStringLiteral("poll"),
                                        QStringLiteral("terminal"), QStringLiteral("scan")};
    static const QStringList terminal{QStringLiteral("terminal")};
    static const QStringList scan{QStringLiteral("scan")};
    static const QStringList waiting{QStringLiteral("codes"), QStringLiteral("poll"),
                                     QStringLiteral("terminal"), QStringLiteral("scan")};
    static const QStringList progressing{QStringLiteral("poll"), QStringLiteral("scan"),
                                         QStringLiteral("dtc setup"), QStringLiteral("dtc import")};
    static const QStringList setup{QStringLiteral("dtc setup")};
    static const QStringList import{QStringLiteral("dtc import")};
    static const QStringList exporting{QStringLiteral("dtc export")};
    static const QStringList exchange = import + exporting;
    static const QStringList database = setup + QStringList(QStringLiteral("dtc lookup")) + exchange;
    static const QStringList codes{QStringLiteral("codes")};
    static const QStringList poll{QStringLiteral("poll")};
    static const std::vector<Option> table{
        {"port", "port",
         "Port to use: com1 to com8, the path of a device (stands for com1=PATH), or comN=PATH.", connecting,
         readPort},
        {"speed", "speed",
         "Line speed: 9600 or 38400 bits per second (default: as chosen in the launcher, at first 9600; most "
         "USB and Bluetooth adapters use 38400).",
         connecting, readSpeed},
        {"simulate", "", "Put a simulated adapter and vehicle on com1.", connecting, readSimulate},
        {"clear", "", "With codes: erase the codes and test results in the vehicle.", codes,
         [](CommandLine& line, const QString&) { line.clearCodes = true; }},
        {"yes", "", "With codes --clear: confirm that data in the vehicle be erased.", codes,
         [](CommandLine& line, const QString&) { line.isConfirmed = true; }},
        {"timeout", "seconds",
         "With codes: give up after so many seconds (default 120; 0 waits for ever). With poll, terminal and "
         "scan: give up when a reply takes so many, unless a user types the commands.",
         waiting,
         [](CommandLine& line, const QString& text) {
             line.timeout = std::chrono::seconds(number("--timeout", text, "seconds", 0, mostSeconds));
         }},
        {"loops", "number", "With poll: end after so many loops (default 1000).", poll,
         [](CommandLine& line, const QString& text) {
             line.loops = number("--loops", text, "a number of loops", 1, mostLoops);
         }},
        {"seconds", "seconds", "With poll: end after so many seconds instead.", poll,
         [](CommandLine& line, const QString& text) {
             line.seconds = std::chrono::seconds(number("--seconds", text, "seconds", 1, mostSeconds));
         }},
        {"log", "file", "With poll: save a data log, the design and every sample.", poll,
         [](CommandLine& line, const QString& text) { line.logPath = fileName("--log", text); }},
        {"export", "file", "With poll: write a table for spreadsheets.", poll,
         [](CommandLine& line, const QString& text) { line.exportPath = fileName("--export", text); }},
        {"hex", "", "With terminal: print the numbers of replies in hexadecimal (the default).", terminal,
         [](CommandLine& line, const QString&) { line.base = NumberBase::hexadecimal; }},
        {"dec", "", "With terminal: in decimal.", terminal,
         [](CommandLine& line, const QString&) { line.base = NumberBase::decimal; }},
        {"oct", "", "With terminal: in octal.", terminal,
         [](CommandLine& line, const QString&) { line.base = NumberBase::octal; }},
        {"header", "header", "With scan: header of the requests, six characters (default 686AF1).", scan,
         [](CommandLine& line, const QString& text) {
             line.scan.cmdHead = accepted("--header", text, checkHeader(fromQt(text)));
         }},
        {"mode", "range", "With scan: modes to ask for, hexadecimal: A-B, or A for one (default 01-01).",
         scan,
         [](CommandLine& line, const QString& text) {
             readRange("--mode", text, checkMode, line.scan.modeStart, line.scan.modeStop);
         }},
        {"pid", "range",
         "With scan: PIDs of each mode, hexadecimal: A-B, A for one, or none for a request without a PID "
         "(default 00-1F). With three or four digits, all PIDs have four.",
         scan, readPid},
        {"suffix", "digits", "With scan: one or two hexadecimal digits behind each request.", scan,
         readSuffix},
        {"show", "filter",
         "With scan: replies to print: all (the default), valid, nonzero (valid and not 0), or data (all but "
         "NO DATA).",
         scan, readFilter},
        {"decimal", "", "With scan: print the value of valid replies in decimal, too.", scan,
         [](CommandLine& line, const QString&) { line.decimal = true; }},
        {"ascii", "", "With scan: print valid replies as characters, too.", scan,
         [](CommandLine& line, const QString&) { line.ascii = true; }},
        {"names", "", "With scan: print the names of the parameters of modes 01 and 02, too.", scan,
         [](CommandLine& line, const QString&) { line.names = true; }},
        {"allow-clear", "",
         "With scan: let it send mode 04, which erases the codes and test results in the vehicle. With the "
         "header 686AF1 it never does.",
         scan, [](CommandLine& line, const QString&) { line.allowsErasing = true; }},
        {"db", "file",
         "With the dtc commands: the database of code descriptions, instead of the one that the windows use.",
         database,
         [](CommandLine& line, const QString& text) { line.databasePath = fileName("--db", text); }},
        {"if-missing", "", "With dtc setup: do nothing when there is a database.", setup,
         [](CommandLine& line, const QString&) { line.onlyIfMissing = true; }},
        {"comma", "",
         "With dtc import or export: code, description and notes are separated by commas (the default).",
         exchange, [](CommandLine& line, const QString&) { line.textOptions.fields = DtcFields::comma; }},
        {"tab", "", "With dtc import or export: by tabs.", exchange,
         [](CommandLine& line, const QString&) { line.textOptions.fields = DtcFields::tab; }},
        {"space", "",
         "With dtc import or export: by blanks. On import, all behind the first blank is the description.",
         exchange, [](CommandLine& line, const QString&) { line.textOptions.fields = DtcFields::space; }},
        {"fixed", "", "With dtc import or export: they are 5, 100 and 255 characters wide.", exchange,
         [](CommandLine& line, const QString&) { line.textOptions.fields = DtcFields::fixed; }},
        {"csv", "", "With dtc import or export: as spreadsheets write it, between commas or semicolons.",
         exchange, [](CommandLine& line, const QString&) { line.textOptions.fields = DtcFields::csv; }},
        {"no-notes", "", "With dtc import or export: leave the notes out.", exchange,
         [](CommandLine& line, const QString&) { line.textOptions.noNotes = true; }},
        {"overwrite", "", "With dtc import: a code that the database has gets the text of the file.", import,
         [](CommandLine& line, const QString&) { line.textOptions.dupOver = true; }},
        {"delim-notes", "",
         "With dtc export: put a separator before the notes, too; else they stand directly behind the "
         "description.",
         exporting, [](CommandLine& line, const QString&) { line.textOptions.delimNotes = true; }},
        {"quiet", "", "With poll, scan, dtc setup or dtc import: show no progress.", progressing,
         [](CommandLine& line, const QString&) { line.quiet = true; }},
    };
    return table;
}

void describe(QCommandLineParser& parser)
{
    QString text = QStringLiteral(
        "\nOBD-II diagnostics with ELM327 adapters. Without a command, the launcher window opens.\n\n"
        "Commands:\n");
    constexpr int usageWidth = 24;
    for (const Command& command : commands)
        text += QStringLiteral("  %1%2\n")
                    .arg(QLatin1String(command.usage), -usageWidth)
                    .arg(QLatin1String(command.description));
    text += QStringLiteral("\nCtrl-C ends a poll run or a scan properly: files and summary are written.\n"
                           "Exit status: 0 when all went well, 1 when something failed (standard error tells "
                           "what),\n2 for a wrong command line.");
    parser.setApplicationDescription(text);
    parser.addHelpOption();
    parser.addVersionOption();
    for (const Option& option : options())
        parser.addOption(option.forParser());
    QStringList names;
    for (const Command& command : commands)
        names += QLatin1String(command.name);
    parser.addPositionalArgument(QStringLiteral("command"), names.join(QStringLiteral(", ")),
                                 QStringLiteral("[command [files]]"));
}

/// @return the usages of the commands that begin with a word; empty when there are none
std::string usagesOf(const QString& word)
{
    std::string usages;
    for (const Command& command : commands) {
        if (command.words().front() == word)
            usages += (usages.empty() ? "" : ", ") + std::string(command.usage);
    }
    return usages;
}

const Command& commandOf(const QStringList& words)
{
    if (words.isEmpty())
        return windows;
    const auto* const found = std::ranges::find_if(commands, [&](const Command& command) {
        const QStringList name = command.words();
        return words.mid(0, name.size()) == name;
    });
    if (found != commands.end())
        return *found;
    const std::string similar = usagesOf(words.front());
    throw UsageError("unknown command \"" + fromQt(words.join(u' ')) + "\"" +
                     (similar.empty() ? "" : "; there are: " + similar));
}

void readFiles(const QStringList& words, const Command& command, CommandLine& line)
{
    const auto count = static_cast<qsizetype>(command.files.size());
    const bool fits = command.list != nullptr ? words.size() > count : words.size() == count;
    if (!fits || words.contains(QString()))
        throw UsageError("wrong words after \"" + std::string(command.name) +
                         "\"; the command is: zint-obd " + command.usage);
    for (qsizetype i = 0; i < count; ++i)
        line.*command.files[static_cast<std::size_t>(i)] = fromQt(words[i]);
    for (const QString& word : words.mid(count))
        (line.*command.list).push_back(fromQt(word));
}

void readOptions(const QCommandLineParser& parser, const Command& command, CommandLine& line)
{
    for (const Option& option : options()) {
        if (!parser.isSet(QLatin1String(option.name)))
            continue;
        if (!option.commands.contains(QLatin1String(command.name))) {
            QStringList takers = option.commands;
            takers.removeAll(QString());
            throw UsageError("--" + std::string(option.name) + " goes with the command " +
                             fromQt(takers.join(QStringLiteral(" or "))));
        }
        option.read(line, parser.value(QLatin1String(option.name)));
    }
}

QString wholePath(const std::string& path)
{
    return QDir::cleanPath(QFileInfo(toQt(path)).absoluteFilePath());
}

/// Refuses a file that would be read or written as two things: one of them would be lost.
void requireDifferentFiles(const CommandLine& line)
{
    QStringList paths;
    for (const std::string& path : {line.designPath, line.logPath, line.exportPath}) {
        if (path.empty())
            continue;
        if (paths.contains(wholePath(path)))
            throw UsageError("\"" + path + "\" is named twice; give each file a name of its own");
        paths += wholePath(path);
    }
}

CommandLine read(const QCommandLineParser& parser)
{
    CommandLine line;
    QStringList words = parser.positionalArguments();
    const Command& command = commandOf(words);
    line.action = command.action;
    readFiles(words.mid(command.words().size()), command, line);
    readOptions(parser, command, line);
    if (line.clearCodes && !line.isConfirmed)
        throw UsageError(
            "--clear erases all diagnostic data in the vehicle; add --yes if that is what you want");
    if (erasesData(line.scan) && !line.allowsErasing)
        throw UsageError(std::string(erasesDataText) + " Add --allow-clear if that is what you want.");
    if (line.seconds && parser.isSet(QStringLiteral("loops")))
        throw UsageError("--loops and --seconds both say when the run ends; give one of them");
    const auto setOf = [&](const QStringList& names) {
        return std::ranges::count_if(names, [&](const QString& name) { return parser.isSet(name); });
    };
    if (setOf({QStringLiteral("hex"), QStringLiteral("dec"), QStringLiteral("oct")}) > 1)
        throw UsageError("--hex, --dec and --oct exclude each other; give one of them");
    if (setOf({QStringLiteral("comma"), QStringLiteral("tab"), QStringLiteral("space"),
               QStringLiteral("fixed"), QStringLiteral("csv")}) > 1)
        throw UsageError("--comma, --tab, --space, --fixed and --csv exclude each other; give one of them");
    requireDifferentFiles(line);
    return line;
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
        return read(parser);
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
