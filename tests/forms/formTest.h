#pragma once

#include "launcher/window/startForm.h"
#include "platform/qtSerialPort.h"
#include "platform/text.h"
#include "support/fixedPortList.h"
#include "support/manualTime.h"
#include "support/memorySettings.h"
#include "support/scriptedAdapter.h"
#include "support/temporaryFolder.h"
#include "widgets/toolContext.h"

#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

namespace zint {

/// Runs the event loop until the condition holds. @return whether it did within five seconds
inline bool waitUntil(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, 5000); }

/// What a frame, a list or any other control with a text shows.
inline QString textOf(const QWidget& control)
{
    for (const char* property : {"title", "currentText", "text"}) {
        if (const QVariant text = control.property(property); text.isValid())
            return text.toString();
    }
    return {};
}

/// Does something to the dialog that comes next, while that is open.
inline void inNextDialog(const std::function<void(QDialog&)>& action)
{
    QTimer::singleShot(0, qApp,
                       [action] { action(*qobject_cast<QDialog*>(QApplication::activeModalWidget())); });
}

/// What the message box says that an action shows until its OK is pressed, as a user would.
inline QString messageOf(const std::function<void()>& action)
{
    QString text;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            watch.stop();
            text = box->text();
            box->button(QMessageBox::Ok)->click();
        }
    });
    watch.start(5);
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
    WireRecord& record() override { return wireRecord; }
    void openTool(Tool tool) override { opened.push_back(tool); }
    void recoverIn(Tool tool) override { opened.push_back(tool); }
    void switchTo(Tool tool) override { opened.push_back(tool); }
    void openFailedConn(QWidget& /*caller*/) override {}
    void assignPorts() override { ++portsAssigned; }
    const PortDirectory& portDirectory() const override { return ports; }
    void useConnection(PortNumber port, std::optional<int> bitsPerSecond) override
    {
        used = portName(port) + " " + std::to_string(bitsPerSecond.value_or(0));
    }

    /// Opens a window in place of the one of before. The test may look at it once it is closed.
    template <typename Form, typename... Parts>
    Form* open(Parts&&... parts)
    {
        delete form;
        auto* window = new Form(std::forward<Parts>(parts)...);
        form = window;
        form->setAttribute(Qt::WA_DeleteOnClose, false);
        form->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(form));
        return window;
    }

    template <typename Widget = QWidget>
    Widget* control(const char* name)
    {
        auto* found = form->findChild<Widget*>(QLatin1String(name));
        return found != nullptr ? found : throw std::logic_error(std::string("no control ") + name);
    }

    /// Presses a button with the mouse, or another one as a key would, or chooses an entry of the menu.
    void click(const char* name)
    {
        if (auto* entry = form->findChild<QAction*>(QLatin1String(name)))
            entry->trigger();
        else if (auto* button = form->findChild<QPushButton*>(QLatin1String(name)))
            QTest::mouseClick(button, Qt::LeftButton);
        else
            control<QAbstractButton>(name)->click();
    }

    /// Types into a box, over what it holds.
    void type(const char* name, const std::string& text)
    {
        auto* box = control<QLineEdit>(name);
        box->setFocus();
        box->selectAll();
        QTest::keyClicks(box, text.empty() ? QStringLiteral("\b") : toQt(text));
    }

    /// Presses keys where the focus is, as "Ctrl+S". A button's shortcut holds it down for a while.
    void press(const char* keys)
    {
        const QKeyCombination key = QKeySequence(QLatin1String(keys))[0];
        QTest::keyClick(form->focusWidget(), key.key(), key.keyboardModifiers());
        EXPECT_TRUE(waitUntil([this] {
            return std::ranges::none_of(form->findChildren<QPushButton*>(), &QPushButton::isDown);
        }));
    }

    /// Goes through a table "control seen / keys seen / box:text seen / ...": clicks, presses or types, and
    /// compares the rest of the row with what is seen then.
    void expectAfterEach(const std::string& table, const std::function<std::string()>& seen)
    {
        for (const QString& row : toQt(table).split(QStringLiteral(" / "))) {
            const QByteArray step = row.section(u' ', 0, 0).toLatin1();
            if (const auto colon = step.indexOf(':'); colon > 0)
                type(step.left(colon), step.mid(colon + 1).toStdString());
            else
                form->findChild<QObject*>(QLatin1String(step)) != nullptr ? click(step) : press(step);
            EXPECT_EQ(seen(), fromQt(row.section(u' ', 1))) << fromQt(row);
        }
    }
    void expectAfterEach(const std::string& table, const char* names)
    {
        expectAfterEach(table, [&] { return shown(names); });
    }

    /// Clicks what closes the window, and the port with it.
    void closeBy(const char* name)
    {
        click(name);
        EXPECT_FALSE(form->isVisible() || (adapter != nullptr && adapter->isOpen()));
    }

    /// What the message box says that a control opens.
    std::string messageBy(const char* name)
    {
        return fromQt(messageOf([&] { click(name); }));
    }

    QString textOf(const char* name) { return zint::textOf(*control(name)); }

    /// What controls show, with a bar between them. @param names with a blank between them
    std::string shown(const char* names)
    {
        QStringList texts;
        for (const QString& name : QString::fromLatin1(names).split(u' '))
            texts += textOf(name.toLatin1());
        return fromQt(texts.join(u'|'));
    }

    /// Those of the controls and menu entries that are enabled.
    std::string enabled(const std::string& names)
    {
        QStringList found = toQt(names).split(u' ');
        found.removeIf([this](const QString& name) {
            return !control<QObject>(name.toLatin1())->property("enabled").toBool();
        });
        return fromQt(found.join(u' '));
    }

    std::string focused() const { return fromQt(form->focusWidget()->objectName()); }

    ManualClock clock;
    WireRecord wireRecord{clock,
                          [] { return [](std::string_view text) { return "masked" + std::string(text); }; },
                          {.file = 2000}};
    TemporaryFolder folder;
    ProgramValues values;
    Design design;
    MemorySettings settings;
    FixedPortList system;
    PortDirectory ports{settings, system};
    std::optional<Launcher> launcher;
    std::vector<Tool> opened;
    std::string used; ///< the connection that a window has asked for
    int portsAssigned = 0;
    std::string device;                 ///< of a real port in place of the scripted adapter
    ScriptedAdapter* adapter = nullptr; ///< of the tool that was made last; owned by it
    ToolContext context{*this, values, design, settings, folder.path()};
    QWidget* form = nullptr; ///< deleted at the end of the test
};

} // namespace zint
