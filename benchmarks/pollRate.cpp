// Requests per second of the poll runner, its window open and its chart visible, against a blocking loop on
// the same adapter; and the processor time that a request costs.

#include "link/recordingPort.h"
#include "measure.h"
#include "platform/qtSerialPort.h"
#include "platform/qtSettingsStore.h"
#include "platform/systemClock.h"
#include "platform/text.h"
#include "process/folders.h"
#include "runner/window/obdPollForm.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTimer>

#include <stdexcept>
#include <string>
#include <utility>

namespace {

constexpr int rounds = 5;
constexpr std::size_t eventCount = 4;

zint::Design fourEvents()
{
    const zint::DesignEntry rpm{.code = "010C", .description = "Engine RPM", .conversion = 5, .frequency = 1};
    return {.title = "Benchmark", .events = std::vector(eventCount, rpm)};
}

struct Run {
    double seconds = 0;
    double processor = 0;
};

/// Nothing but a port around the window.
class DeviceShell final : public zint::Shell {
public:
    explicit DeviceShell(std::string path) : path_(std::move(path)) {}

    zint::Launcher& makeLauncher(zint::Prompts&) override { throw std::logic_error("there is no launcher"); }
    zint::ConnectionChoice connection() const override { return {}; }
    std::unique_ptr<zint::SerialPort> makePort(zint::EventGate& gate, const zint::ConnectionChoice&) override
    {
        return std::make_unique<zint::RecordingPort>(
            std::make_unique<zint::QtSerialPort>(gate, [this](zint::PortNumber) { return path_; }), record_,
            [this](zint::PortNumber, int) { return path_; });
    }
    zint::WireRecord& record() override { return record_; }
    void openTool(zint::Tool) override {}
    void recoverIn(zint::Tool) override {}
    void switchTo(zint::Tool) override {}
    void openFailedConn(QWidget&) override {}
    void assignPorts() override {}
    const zint::PortDirectory& portDirectory() const override
    {
        throw std::logic_error("there are no ports");
    }
    void useConnection(zint::PortNumber, std::optional<int>) override {}

private:
    std::string path_;
    zint::SystemClock clock_;
    zint::WireRecord record_{clock_, {}}; // as the program does
};

/// A run through the window, from the first request to the last reply.
Run poll(const std::string& path, int loops)
{
    zint::ProgramValues values;
    zint::Design design = fourEvents();
    zint::QtSettingsStore settings;
    DeviceShell shell(path);
    zint::ToolContext context{.shell = shell,
                              .values = values,
                              .design = design,
                              .settings = settings,
                              .userDataFolder = zint::fromQt(zint::userDataFolder())};
    auto* form = new zint::obdPollForm(context);
    form->show();
    const auto* pages = form->findChild<QTabWidget*>();
    const_cast<QTabWidget*>(pages)->setCurrentIndex(1);
    auto* loopsBox = form->findChild<QLineEdit*>(QStringLiteral("textSampleCnt"));
    loopsBox->setText(QString::number(loops));
    Q_EMIT loopsBox->textEdited(loopsBox->text());
    form->findChild<QAction*>(QStringLiteral("mnuResetVal"))->trigger();

    Run run;
    RateClock::time_point start;
    double processorBefore = 0;
    const auto* status = form->findChild<QLabel*>(QStringLiteral("statusBox"));
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
        if (start == RateClock::time_point() && status->text().endsWith(QLatin1String(" Polling"))) {
            start = RateClock::now();
            processorBefore = processorSeconds();
        } else if (status->text().startsWith(QLatin1String("Completed"))) {
            run = {secondsSince(start), processorSeconds() - processorBefore};
            form->close();
            QCoreApplication::quit();
        }
    });
    watch.start(10);
    form->findChild<QAction*>(QStringLiteral("mnuComStart"))->trigger();
    QApplication::exec();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return run;
}

} // namespace

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    if (argc != 5)
        fail("usage: bench_pollRate PATH LOOPS GOAL DESCRIPTION");
    const int loops = std::max(1, std::atoi(argv[2]));
    const int requests = loops * eventCount;
    std::vector<double> window;
    std::vector<double> processor;
    std::vector<double> blocking;
    for (int round = 0; round < rounds; ++round) {
        const Run run = poll(argv[1], loops);
        window.push_back(requests / run.seconds);
        processor.push_back(run.processor / requests * 1e6);
        blocking.push_back(requests / blockingSeconds(argv[1], "010C\r", requests));
    }
    const double ratio = median(window) / median(blocking);
    std::printf("polling, %s: %.0f requests/s, blocking loop %.0f (medians of %d): ratio %.2f (%s); "
                "%.1f us of processor time per request\n",
                argv[4], median(window), median(blocking), rounds, ratio,
                atLeast(std::atof(argv[3]), ratio).c_str(), median(processor));
    return benchmarkStatus();
}
