#pragma once

#include "doctor/connectionDoctor.h"
#include "platform/qtTimer.h"
#include "platform/systemClock.h"
#include "platform/systemInspector.h"
#include "widgets/toolForm.h"

#include <memory>
#include <optional>

namespace Ui {
class doctorForm;
} // namespace Ui

namespace zint {

/// The window of the connection doctor: the steps of the check with their marks.
class doctorForm final : public toolForm {
    Q_OBJECT

public:
    explicit doctorForm(ToolContext& context);
    ~doctorForm() override;

    /// Begins to check the launcher's port, once the window is there.
    void beginSoon();

private:
    void Form_Unload() override;
    void changeEvent(QEvent* event) override;

    void check_Click();
    void takeOver_Click();
    void copyText_Click();
    void portChooser_Click();

    void listPorts();
    void makeDoctor();
    PortNumber chosenPort() const;
    void paint();
    void paintSteps();

    std::unique_ptr<Ui::doctorForm> ui;
    PortNumber usedPort_; ///< by the tools
    std::unique_ptr<SerialPort> MSComm1;
    QtTimer Timer1;
    SystemClock clock_;
    Clock::Time deafUntil_{0}; ///< to "Check"
    SystemInspector inspector_;
    std::optional<ConnectionDoctor> doctor_;
};

} // namespace zint
