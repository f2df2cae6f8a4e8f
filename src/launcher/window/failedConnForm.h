#pragma once

#include "widgets/toolForm.h"

#include <memory>

namespace Ui {
class failedConnForm;
} // namespace Ui

namespace zint {

/// The connection-trouble dialog: the last failure and three hints. When it closes it shows no other window,
/// not even the one that opened it.
class failedConnForm final : public toolForm {
    Q_OBJECT

public:
    explicit failedConnForm(ToolContext& context);
    ~failedConnForm() override;

private:
    void tooOld_Click();
    void badHardware_Click();
    void ignitionOn_Click();
    void checkCom_Click();
    void applyCom_Click(); ///< sends nothing, on purpose
    void cancelCom_Click();
    void helpCom_Click();

    std::unique_ptr<Ui::failedConnForm> ui;
};

} // namespace zint
