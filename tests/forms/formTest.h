#pragma once

#include "launcher/window/startForm.h"
#include "platform/qtSerialPort.h"
#include "support/fixedPortList.h"
#include "support/memorySettings.h"
#include "support/scriptedAdapter.h"
#include "support/temporaryFolder.h"
#include "widgets/toolContext.h"

#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QMessageBox>
#include <QTest>

namespace zint {

/// Runs the event loop until the condition holds. @return whether it did within five seconds
inline bool waitUntil(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, 5000); }

/// What a label, a button or a frame shows.
inline QString textOf(const QWidget& control)
{
    return control.property(qobject_cast<const QGroupBox*>(&control) != nullptr ? "title" : "text")
        .toString();
}

/// The next message box is read and its OK pressed, as a user would.
inline void confirmNextBox(QString* text)
{
    auto* watch = new QTimer(qApp);
    QObject::connect(watch, &QTimer::timeout, watch, [watch, text] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            watch->stop();
            watch->deleteLater();
            *text = box->text();
            box->button(QMessageBox::Ok)->click();
        }
    });
    watch->start(5);
}

/// What the message box says that an action shows until its OK is pressed.
inline QString messageOf(const std::function<void()>& action)
{
    QString text;
    confirmNextBox(&text);
    action();
    return text;
}

/// A window with what the program would give it. The port is a scripted adapter; other windows are only
/// noted.
class FormTest : public testing::Test, protected Shell {
protected:
    ~FormTest() override
    {
        delete form;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    Launcher& makeLauncher(Prompts& prompts) override
    {
        return launcher.emplace(settings, ports, prompts, values, design,
                                Launcher::System{.workingFolder = "/work", .findBrowser = [] { return ""; }});
    }
    ConnectionChoice connection() const override { return {.device = "/dev/ttyS0"}; }
    std::unique_ptr<SerialPort> makePort(EventGate& gate, const ConnectionChoice& /*choice*/) override
    {
        if (!device.empty())
            return std::make_unique<QtSerialPort>(gate, [this](PortNumber) { return device; });
        auto port = std::make_unique<ScriptedAdapter>(&gate);
        adapter = port.get();
        return port;
    }
    void openTool(Tool tool) override { opened.push_back(tool); }
    void recoverIn(Tool tool) override { opened.push_back(tool); }
    void switchTo(Tool tool) override { opened.push_back(tool); }
    void openFailedConn(QWidget& /*caller*/) override {}
    void assignPorts() override { ++portsAssigned; }

    template <typename Widget>
    Widget* control(const char* name)
    {
        auto* found = form->findChild<Widget*>(QLatin1String(name));
        return found != nullptr ? found : throw std::logic_error(std::string("no control ") + name);
    }

    void click(const char* name) { QTest::mouseClick(control<QPushButton>(name), Qt::LeftButton); }
    void trigger(const char* action) { control<QAction>(action)->trigger(); }

    QString textOf(const char* name) { return zint::textOf(*control<QWidget>(name)); }

    TemporaryFolder folder;
    ProgramValues values;
    Design design;
    MemorySettings settings;
    FixedPortList system;
    PortDirectory ports{settings, system};
    std::optional<Launcher> launcher;
    std::vector<Tool> opened;
    int portsAssigned = 0;
    std::string device;                 ///< of a real port in place of the scripted adapter
    ScriptedAdapter* adapter = nullptr; ///< of the tool that was made last; owned by it
    ToolContext context{*this, values, design, settings, folder.path()};
    QWidget* form = nullptr; ///< deleted at the end of the test
};

} // namespace zint
