#pragma once

#include "launcher/launcher.h"
#include "platform/qtTimer.h"
#include "widgets/toolForm.h"

#include <functional>
#include <memory>

namespace Ui {
class startForm;
} // namespace Ui

namespace zint {

/// The launcher's window.
class startForm final : public toolForm {
    Q_OBJECT

public:
    /// What the window asks of the program.
    struct Actions {
        std::function<bool(Tool)> hasTool;
        std::function<void(Tool)> openTool;
        std::function<void()> assignPorts;
        std::function<void(Tool)> recoverIn; ///< opens a tool and its list of unsaved work
    };

    /// Loads the saved settings into the launcher. @param context and launcher outlive the window
    startForm(ToolContext& context, const std::function<Launcher&(Prompts&)>& makeLauncher, Actions actions);
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
    void mnuSetUpDtc_Click();
    void mnuShowReg_Click();
    void mnuClearReg_Click();
    void connectToolButton(QPushButton* button, Tool tool);
    void lookAtPorts();
    void paint();

    std::unique_ptr<Ui::startForm> ui;
    Launcher& launcher_;
    Actions actions_;
    QtTimer portWatch_{gate()};
    QPoint place_; ///< where the window was when it was hidden; a window manager would choose another place
};

} // namespace zint
