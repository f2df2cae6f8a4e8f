// Requests per second of the PID scanner, each reply listed in the box of its window, against a blocking loop
// that sends the same requests to the same adapter.

#include "compareRates.h"
#include "noPrompts.h"
#include "platform/dateText.h"
#include "platform/qtSerialPort.h"
#include "platform/qtTimer.h"
#include "platform/systemClock.h"
#include "scanner/scanner.h"
#include "widgets/plainTextBox.h"

#include <QApplication>

#include <array>
#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr const char* mode = "22";
constexpr int mostRequests = 0x10000;

std::string pidText(int pid)
{
    std::array<char, 9> digits{};
    std::snprintf(digits.data(), digits.size(), "%04X", static_cast<unsigned>(pid));
    return digits.data();
}

/// A scan of the mode's first PIDs.
class Run {
public:
    Run(const std::string& path, int count)
        : port_(gate_, [path](zint::PortNumber) { return path; }),
          completed_(" Scan Completed " + std::to_string(count) + " Events(s)")
    {
        using Boxes = zint::ScanParameters;
        scanner_.type(&Boxes::modeStart, mode);
        scanner_.type(&Boxes::modeStop, mode);
        scanner_.type(&Boxes::pidStart, pidText(0));
        scanner_.type(&Boxes::pidStop, pidText(count - 1));
        scanner_.onChanged = [this] { changed(); };
        box_.resize(600, 400);
        box_.show();
    }

    double secondsTaken()
    {
        gate_.run([this] { scanner_.pressScan(); });
        if (!scanner_.isScanning())
            fail(scanner_.panel().statusBox.c_str());
        QCoreApplication::exec();
        return seconds_;
    }

private:
    void changed()
    {
        const std::string& status = scanner_.panel().statusBox;
        if (start_ == RateClock::time_point()) {
            if (status.ends_with(" Scanning"))
                start_ = RateClock::now();
        } else if (!scanner_.isScanning()) {
            seconds_ = secondsSince(start_);
            if (!status.ends_with(completed_))
                fail(status.c_str());
            QCoreApplication::quit();
        }
    }

    zint::EventGate gate_;
    zint::QtSerialPort port_;
    zint::QtTimer timer_{gate_};
    zint::QtTimer silence_{gate_};
    zint::SystemClock clock_;
    NoPrompts prompts_;
    zint::PlainTextBox box_;
    zint::Scanner scanner_{{.line = {port_, {}, timer_, &silence_},
                            .clock = clock_,
                            .prompts = prompts_,
                            .outBox = box_,
                            .dateText = zint::longDateText,
                            .beep = [] {}}};
    std::string completed_;
    RateClock::time_point start_;
    double seconds_ = 0;
};

/// Sends the same with the adapter's echo off.
double blockingSecondsOfScan(const char* path, int count)
{
    std::vector<std::string> texts;
    std::vector<const char*> requests;
    for (int pid = 0; pid < count; ++pid)
        texts.push_back(mode + pidText(pid) + '\r');
    for (const std::string& text : texts)
        requests.push_back(text.c_str());
    blockingSeconds(path, "ATE0\r", 1);
    return blockingSeconds(path, requests, count);
}

} // namespace

int main(int argc, char* argv[])
{
    return compareRates<QApplication>(
        argc, argv, {.name = "scanner", .counted = "requests", .atLeast = 0.8},
        [](const char* path, int count) {
            if (count > mostRequests)
                fail("a mode has no more than 65536 PIDs");
            return Run(path, count).secondsTaken();
        },
        blockingSecondsOfScan);
}
