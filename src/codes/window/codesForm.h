#pragma once

#include "codes/codesExchange.h"
#include "dtcdb/descriptionSource.h"
#include "platform/qtFileDialogs.h"
#include "platform/qtTimer.h"
#include "platform/systemClock.h"
#include "widgets/toolForm.h"

#include <QLabel>

#include <array>
#include <memory>

namespace Ui {
class codesForm;
} // namespace Ui

namespace zint {

/// The trouble-code window.
class codesForm final : public toolForm {
    Q_OBJECT

public:
    explicit codesForm(ToolContext& context);
    ~codesForm() override;

private:
    void Form_Unload() override;
    void getCodes_Click();
    void clearCodes_Click();
    void labelStats_Click();
    void ftc_Click();
    void mnuSaveReport_Click();

    void setUpList();
    void copyCodes();
    void paint();

    std::unique_ptr<Ui::codesForm> ui;
    std::array<QLabel*, monitorCount> monitors_; ///< in the order of the readiness texts
    std::unique_ptr<SerialPort> MSComm1;
    QtTimer Timer1;
    QtTimer silence_;
    SystemClock clock_;
    QtFileDialogs CommonDialog1{*this};
    DtcDescriptionSource descriptions_;
    CodesExchange exchange_;
};

} // namespace zint
