#pragma once

#include "designer/designer.h"
#include "platform/qtFileDialogs.h"
#include "platform/qtTimer.h"
#include "platform/toolForm.h"

#include <exception>
#include <memory>

namespace Ui {
class pollSetup2;
} // namespace Ui

namespace zint {

class GridModel;

/// The polling designer's window.
class pollSetup2 final : public toolForm {
    Q_OBJECT

public:
    explicit pollSetup2(ToolContext& context);
    ~pollSetup2() override;

private:
    void Form_Unload() override;
    bool printOn(QPrinter& printer) override;
    void mnuAddNew_Click();
    void comDone_Click();
    void autoSpeed_Click(bool checked);
    void pollSpeed_Change(int position);
    void pollTitle_Change(const QString& title);

    void connectActions();
    void setUpGrid();
    void setUpToolbar();
    bool enterEdit(const std::function<void()>& edit);
    void moveCurrent(int rows);
    void closeEditor();
    void editNext();
    void paint();

    std::unique_ptr<Ui::pollSetup2> ui;
    std::unique_ptr<SerialPort> MSComm1;
    QtTimer Timer1;
    QtFileDialogs CommonDialog1;
    KeptDesigns kept_;
    Designer designer_;
    std::unique_ptr<GridModel> grid_;
    bool isClosingEditor_ = false;
    std::exception_ptr failedEdit_; ///< of the editor that is being closed
};

} // namespace zint
