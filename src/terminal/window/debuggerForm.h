#pragma once

#include "platform/qtTimer.h"
#include "platform/systemClock.h"
#include "platform/throttle.h"
#include "terminal/commandHistory.h"
#include "terminal/terminal.h"
#include "widgets/outputForm.h"

#include <memory>

namespace Ui {
class debuggerForm;
} // namespace Ui

namespace zint {

/// The command terminal's window.
class debuggerForm final : public outputForm {
    Q_OBJECT

public:
    explicit debuggerForm(ToolContext& context);
    ~debuggerForm() override;

private:
    void Form_Unload() override;
    void showStatus(const std::string& text) override;
    void keyPressEvent(QKeyEvent* event) override;

    void openCom_Click();
    void sendCom_Click();
    void repeatCom_Click();
    void mnuOpenCom_Click();
    void mnuCloseCom_Click();

    std::unique_ptr<Ui::debuggerForm> makeUi();
    void connectControls();
    void takeOptions();
    void rememberCommand();
    void paint();

    std::unique_ptr<Ui::debuggerForm> ui;
    std::unique_ptr<SerialPort> MSComm1;
    QtTimer Timer1;
    SystemClock clock_;
    Terminal terminal_;
    CommandHistory commands_;
    Throttle statsThrottle_;
};

} // namespace zint
