#include "commands/scanCommand.h"

#include "commands/commandSession.h"
#include "commands/options.h"
#include "platform/dateText.h"
#include "platform/throttle.h"
#include "process/console.h"
#include "scanner/scanner.h"

#include <QCoreApplication>

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace zint {
namespace {

/// Without the date and time that the window's box begins with.
class ScanOutput final : public PrintedBox {
public:
    void replace(const std::string& /*text*/) override {}
};

/// The scanner and all that it needs.
class ScanRun {
public:
    explicit ScanRun(const ScanOptions& options)
        : options_(options), session_(options.connection, options.timeout)
    {
        for (const Scanner::Box box :
             {&ScanParameters::cmdHead, &ScanParameters::modeStart, &ScanParameters::modeStop,
              &ScanParameters::pidStart, &ScanParameters::pidStop, &ScanParameters::cmdSuffix})
            scanner_.type(box, options_.scan.*box);
        scanner_.setDisplay({.filter = options_.filter,
                             .dspDecimal = options_.decimal,
                             .dspAscii = options_.ascii,
                             .dspNames = options_.names});
        scanner_.onReply = [this] { session_.patience.begin(); };
        scanner_.onChanged = [this] { watch(); };
    }

    int run()
    {
        const Interruption interruption([this] { session_.gate.run([] { QCoreApplication::quit(); }); });
        session_.gate.run([this] { begin(); });
        if (scanner_.isScanning() && !box_.hasFailed)
            QCoreApplication::exec();
        showProgress({});
        session_.gate.run([this] { scanner_.unload(); });
        const bool isWhole = !session_.prompts.hasComplained && !box_.hasFailed;
        if (isWhole && !failure().empty())
            complain(failure());
        return isWhole && failure().empty() ? exitStatus::success : exitStatus::failure;
    }

private:
    /// Why the scan was no success, unless that was told already.
    std::string failure() const
    {
        const Scanner::Counts& counts = scanner_.counts();
        if (!scanner_.failure().empty() || counts.invalid < counts.events)
            return scanner_.failure();
        return counts.events == 0 ? "no request was sent or answered"
                                  : "no reply was valid: is the ignition on?";
    }

    void begin()
    {
        scanner_.pressScan();
        session_.patience.begin();
    }

    void watch()
    {
        if (!scanner_.isScanning() || box_.hasFailed)
            QCoreApplication::quit();
        else if (!options_.quiet)
            progress_.request();
    }

    void paintProgress() const
    {
        const ProgressBar& bar = scanner_.panel().ProgressBar1;
        if (!bar.text.empty())
            showProgress(std::to_string(static_cast<int>(bar.value)) + "%, " + bar.text);
    }

    const ScanOptions& options_;
    VehicleSession session_;
    ScanOutput box_;
    Scanner scanner_{{.line = session_.line(),
                      .clock = session_.clock,
                      .prompts = session_.prompts,
                      .outBox = box_,
                      .dateText = longDateText,
                      .beep = [] {}}};
    Throttle progress_{[this] { paintProgress(); }};
};

std::string accepted(const CheckedBox& box)
{
    if (!box.complaint.empty())
        throw UsageError(box.complaint);
    return box.text;
}

/// Reads "A-B", or "A" for the range from A to A.
void readRange(const std::string& text, CheckedBox (*check)(std::string_view), std::string& start,
               std::string& stop)
{
    const auto dash = text.find('-');
    start = accepted(check(text.substr(0, dash)));
    stop = dash == std::string::npos ? start : accepted(check(text.substr(dash + 1)));
    const bool isOpen = check == checkPid && scanNumber(stop) == 0; // 0 stands for no last PID
    if (!isOpen && scanNumber(stop) < scanNumber(start))
        throw UsageError("the range ends before it begins");
}

bool isNothing(const std::string& text) { return text.empty() || text == "none"; }

ScanFilter filterOf(const std::string& name)
{
    static const std::array filters{
        std::pair{"all", ScanFilter::all},
        std::pair{"valid", ScanFilter::valid},
        std::pair{"nonzero", ScanFilter::validNonZero},
        std::pair{"data", ScanFilter::exceptNoData},
    };
    for (const auto& [known, filter] : filters) {
        if (name == known)
            return filter;
    }
    throw UsageError("give all, valid, nonzero or data");
}

} // namespace

void ScanOptions::describe(CLI::App& command)
{
    addConnection(command, connection);
    addTimeout(command, timeout,
               "Give up when a reply takes so many seconds (default 120; 0 waits for ever).");
    describeRange(command);
    describeOutput(command);
    addQuiet(command, quiet);
}

void ScanOptions::describeRange(CLI::App& command)
{
    const char* const requests = "Requests";
    addValue(command, "--header", "HEADER", "Header of the requests, six characters (default 686AF1).",
             [this](const std::string& text) { scan.cmdHead = accepted(checkHeader(text)); })
        ->group(requests);
    addValue(command, "--mode", "RANGE", "Modes to ask for, hexadecimal: A-B, or A for one (default 01-01).",
             [this](const std::string& text) { readRange(text, checkMode, scan.modeStart, scan.modeStop); })
        ->group(requests);
    addValue(command, "--pid", "RANGE",
             "PIDs of each mode, hexadecimal: A-B, A for one, or none for a request without a PID (default "
             "00-1F). With three or four digits, all PIDs have four.",
             [this](const std::string& text) {
                 if (isNothing(text)) // which the check of a box refuses
                     scan.pidStart = scan.pidStop = {};
                 else
                     readRange(text, checkPid, scan.pidStart, scan.pidStop);
             })
        ->group(requests);
    addValue(command, "--suffix", "DIGITS", "One or two hexadecimal digits behind each request.",
             [this](const std::string& text) {
                 scan.cmdSuffix = isNothing(text) ? std::string() : accepted(checkSuffix(text));
             })
        ->group(requests);
    command
        .add_flag("--allow-clear", allowsErasing,
                  "Let it send mode 04, which erases the codes and test results in the vehicle. With the "
                  "header 686AF1 it never does.")
        ->group(requests);
}

void ScanOptions::describeOutput(CLI::App& command)
{
    const char* const output = "Output";
    addValue(command, "--show", "all|valid|nonzero|data",
             "Replies to print: all (the default), valid, nonzero (valid and not 0), or data (all but NO "
             "DATA).",
             [this](const std::string& text) { filter = filterOf(text); })
        ->group(output);
    command.add_flag("--decimal", decimal, "Print the value of valid replies in decimal, too.")
        ->group(output);
    command.add_flag("--ascii", ascii, "Print valid replies as characters, too.")->group(output);
    command.add_flag("--names", names, "Print the names of the parameters of modes 01 and 02, too.")
        ->group(output);
}

void ScanOptions::check() const
{
    if (erasesData(scan) && !allowsErasing)
        throw UsageError(std::string(erasesDataText) + " Add --allow-clear if that is what you want.");
}

int runScanCommand(const ScanOptions& options) { return ScanRun(options).run(); }

} // namespace zint
