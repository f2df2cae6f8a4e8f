#pragma once

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
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTimer>

#include <stdexcept>
#include <string>
#include <utility>

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
inline Run poll(const std::string& path, zint::Design design, int loops, bool combines = false)
{
    zint::ProgramValues values;
    zint::QtSettingsStore settings;
    DeviceShell shell(path);
    zint::ToolContext context{.shell = shell,
                              .values = values,
                              .design = design,
                              .settings = settings,
                              .userDataFolder = zint::fromQt(zint::userDataFolder())};
    auto* form = new zint::obdPollForm(context);
    form->show();
    if (auto* combine = form->findChild<QCheckBox*>(QStringLiteral("combine"));
        combine->isChecked() != combines)
        combine->click();
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
