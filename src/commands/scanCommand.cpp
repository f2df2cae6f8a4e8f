#include "commands/scanCommand.h"

#include "commands/commandSession.h"
#include "platform/dateText.h"
#include "platform/qtTimer.h"
#include "platform/systemClock.h"
#include "platform/throttle.h"
#include "process/console.h"
#include "scanner/scanner.h"

#include <QCoreApplication>

#include <memory>

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
    explicit ScanRun(const CommandLine& line) : line_(line), session_(line.connection)
    {
        for (const Scanner::Box box :
             {&ScanParameters::cmdHead, &ScanParameters::modeStart, &ScanParameters::modeStop,
              &ScanParameters::pidStart, &ScanParameters::pidStop, &ScanParameters::cmdSuffix})
            scanner_.type(box, line_.scan.*box);
        scanner_.setDisplay({.filter = line_.filter,
                             .dspDecimal = line_.decimal,
                             .dspAscii = line_.ascii,
                             .dspNames = line_.names});
        scanner_.onReply = [this] { patience_.begin(); };
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
        patience_.begin();
    }

    void watch()
    {
        if (!scanner_.isScanning() || box_.hasFailed)
            QCoreApplication::quit();
        else if (!line_.quiet)
            progress_.request();
    }

    void paintProgress() const
    {
        const ProgressBar& bar = scanner_.panel().ProgressBar1;
        if (!bar.text.empty())
            showProgress(std::to_string(static_cast<int>(bar.value)) + "%, " + bar.text);
    }

    const CommandLine& line_;
    CommandSession session_;
    SystemClock clock_;
    ScanOutput box_;
    QtTimer resetTimer_{session_.gate};
    QtTimer silence_{session_.gate};
    Patience patience_{session_, line_.timeout};
    std::unique_ptr<SerialPort> port_ = session_.makePort();
    Scanner scanner_{{.port = *port_,
                      .timer = resetTimer_,
                      .silence = silence_,
                      .clock = clock_,
                      .prompts = session_.prompts,
                      .outBox = box_,
                      .dateText = longDateText,
                      .beep = [] {}}, // the text tells all
                     session_.connection()};
    Throttle progress_{[this] { paintProgress(); }};
};

} // namespace

int runScanCommand(const CommandLine& line) { return ScanRun(line).run(); }

} // namespace zint
