#pragma once

#include "platform/qtTimer.h"
#include "platform/systemClock.h"
#include "platform/throttle.h"
#include "scanner/scanner.h"
#include "widgets/outputForm.h"

#include <array>
#include <memory>

class QLineEdit;
class QRadioButton;

namespace Ui {
class scanForm;
} // namespace Ui

namespace zint {

/// The PID scanner's window.
class scanForm final : public outputForm {
    Q_OBJECT

public:
    explicit scanForm(ToolContext& context);
    ~scanForm() override;

private:
    /// A box of the scan's parameters.
    struct BoxEntry {
        QLineEdit* edit;
        Scanner::Box box;
    };

    void Form_Unload() override;
    void showStatus(const std::string& text) override;
    void keyPressEvent(QKeyEvent* event) override;

    void comScan_Click();
    void calcHdr_Click();
    void openCalculator();
    void labelStats_Click();
    void mnuClear_Click();

    std::unique_ptr<Ui::scanForm> makeUi();
    void connectControls();
    std::array<QRadioButton*, 4> filterButtons() const;
    void showDisplay();
    void takeDisplay();
    void paintNow();
    void paintThrottled();

    std::unique_ptr<Ui::scanForm> ui;
    std::unique_ptr<SerialPort> MSComm1;
    QtTimer Timer1;
    QtTimer silence_;
    SystemClock clock_;
    Scanner scanner_;
    std::array<BoxEntry, 6> boxes_;
    Throttle throttle_;
};

} // namespace zint
