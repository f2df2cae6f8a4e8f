#pragma once

#include "platform/toolContext.h"
#include "support/memorySettings.h"
#include "support/scriptedAdapter.h"

#include <QApplication>
#include <QMessageBox>
#include <QString>
#include <QWidget>
#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace zint {

/// Runs the event loop until the condition holds. @return whether it did within five seconds
bool waitUntil(const std::function<bool()>& condition);

/// The next message box is read and answered as a user would.
void answerNextBox(QMessageBox::StandardButton button, QString* text = nullptr);

/// The next modal dialog is handed to `act`, which closes it.
void withNextDialog(const std::function<void(QWidget& dialog)>& act);

/// A window with what the program would give it; the port is a scripted adapter.
class FormTest : public testing::Test {
protected:
    FormTest();
    ~FormTest() override;

    /// A control of the window by its name.
    template <typename Widget>
    Widget* control(const char* name)
    {
        auto* found = form->findChild<Widget*>(QLatin1String(name));
        if (found == nullptr)
            throw std::logic_error(std::string("no control ") + name);
        return found;
    }

    QString textOf(const char* name);

    ProgramValues values;
    Design design;
    MemorySettings settings;
    ConnectionChoice choice;
    ScriptedAdapter* adapter = nullptr; ///< of the tool that was made last; owned by it
    int failedConnOpened = 0;
    ToolContext context;
    QWidget* form = nullptr; ///< deleted at the end of the test
};

} // namespace zint
