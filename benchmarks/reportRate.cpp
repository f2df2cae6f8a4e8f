// What a full vehicle report takes, against a blocking loop that sends the very same commands to the same
// adapter. Opening and closing the port is told beside it: the toolkit writes a lock file to the disk.

#include "compareRates.h"
#include "noPrompts.h"
#include "platform/qtSerialPort.h"
#include "platform/qtTimer.h"
#include "platform/systemClock.h"
#include "report/vehicleReport.h"

#include <string>
#include <vector>

namespace {

constexpr std::size_t unitCount = 2;

double secondsOf(const auto& step)
{
    const auto start = RateClock::now();
    step();
    return secondsSince(start);
}

/// A port of the machine that keeps what is written.
class RecordingPort final : public zint::SerialPort {
public:
    RecordingPort(zint::EventGate& gate, const std::string& path)
        : port_(gate, [path](zint::PortNumber) { return path; })
    {
        port_.onNotice = [this](zint::PortNotice notice) { onNotice(notice); };
    }

    void open(zint::PortNumber number, int bitsPerSecond) override
    {
        written.clear();
        overhead = secondsOf([&] { port_.open(number, bitsPerSecond); });
    }
    void close() override
    {
        written.pop_back(); // "ATD", whose answer is waited for here
        overhead += secondsOf([&] { port_.close(); });
    }
    bool isOpen() const override { return port_.isOpen(); }
    std::string input() override { return port_.input(); }
    void output(std::string_view text) override
    {
        written.emplace_back(text);
        port_.output(text);
    }

    std::vector<std::string> written;
    double overhead = 0; ///< seconds of the last opening and closing

private:
    zint::QtSerialPort port_;
};

class Run {
public:
    explicit Run(const std::string& path) : port_(gate_, path)
    {
        report_.onChanged = [this] {
            if (!report_.isRunning())
                QCoreApplication::quit();
        };
    }

    double secondsTaken()
    {
        const double seconds = secondsOf([this] { read(); });
        overheads.push_back(port_.overhead);
        return seconds - port_.overhead;
    }

    const std::vector<std::string>& commands() const { return port_.written; }

    std::vector<double> overheads; ///< of each report

private:
    void read()
    {
        gate_.run([this] { report_.pressReadReport(); });
        if (report_.isRunning())
            QCoreApplication::exec();
        if (!report_.failure().empty() || report_.facts().units.size() != unitCount)
            fail(("no whole report of two control units: " + report_.failure()).c_str());
    }

    zint::EventGate gate_;
    RecordingPort port_;
    zint::QtTimer timer_{gate_};
    zint::QtTimer silence_{gate_};
    zint::SystemClock clock_;
    NoPrompts prompts_;
    zint::VehicleReport report_{
        {.line = {port_, {}, timer_, &silence_}, .clock = clock_, .prompts = prompts_}};
};

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    if (argc != 5)
        fail("usage: bench_reportRate PATH COUNT GOAL DESCRIPTION");
    const char* const path = argv[1];
    const int count = std::max(1, std::atoi(argv[2]));
    Run run(path);
    run.secondsTaken();
    const std::vector<std::string> commands = run.commands();
    std::vector<const char*> requests;
    for (const std::string& command : commands)
        requests.push_back(command.c_str());
    const auto sum = [count](const auto& seconds) {
        double all = 0;
        for (int i = 0; i < count; ++i)
            all += seconds();
        return all / count;
    };
    const ComparedSeconds seconds = compareSeconds(
        [&] { return sum([&] { return run.secondsTaken(); }); },
        [&] { return blockingSeconds(path, requests, static_cast<int>(requests.size()) * count) / count; });
    const double ratio = seconds.program / seconds.blocking;
    std::printf("vehicle report, %s: %.2f ms for %zu commands, blocking loop %.2f ms (medians of %d): ratio "
                "%.3f (%s); %.2f ms to open and close the port\n",
                argv[4], seconds.program * 1e3, requests.size(), seconds.blocking * 1e3,
                ComparedSeconds::rounds, ratio, atMost(std::atof(argv[3]), ratio).c_str(),
                median(run.overheads) * 1e3);
    return benchmarkStatus();
}
