#pragma once

#include "launcher/launcher.h"
#include "platform/qtTimer.h"
#include "widgets/toolForm.h"

#include <memory>

namespace Ui {
class startForm;
} // namespace Ui

namespace zint {

/// The launcher's window.
class startForm final : public toolForm {
    Q_OBJECT

public:
    /// Makes the launcher and loads the saved settings into it. @param context outlives the window
    explicit startForm(ToolContext& context);
    ~startForm() override;

    /// Offers what was not saved since a session began that was cut off.
    void offerUnsavedWork(std::chrono::system_clock::time_point since);

    /// Shows the window again, where it was, with what the launcher says by now.
    void showAgain();

private:
    void Form_Unload() override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

    void comPort_Click(int position);
    void comSpeed_Click(int position);
    void mnuPorts_Click();
    void mnuCheckConn_Click();
    void mnuSetUpDtc_Click();
    void mnuShowReg_Click();
    void mnuClearReg_Click();
    void connectToolButton(QPushButton* button, Tool tool);
    void lookAtPorts();
    void paint();

    std::unique_ptr<Ui::startForm> ui;
    Launcher& launcher_;
    QtTimer portWatch_{gate()};
    QPoint place_; ///< where the window was when it was hidden; a window manager would choose another place
};

} // namespace zint
