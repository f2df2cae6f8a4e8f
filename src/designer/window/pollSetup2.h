#pragma once

#include "designer/designer.h"
#include "platform/qtFileDialogs.h"
#include "platform/qtTimer.h"
#include "widgets/toolForm.h"

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

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void Form_Unload() override;
    void endEditing() override;
    bool printOn(QPrinter& printer) override;
    void mnuAddParameters_Click();
    void mnuOwnParameters_Click(QWidget* parent);
    void mnuAddNew_Click();
    void comDone_Click();
    void labelStats_Click();
    void autoSpeed_Click(bool checked);
    void pollSpeed_Change(int position);
    void pollTitle_Change(const QString& title);

    void connectActions();
    void setUpGrid();
    void setUpHeader();
    void setUpUnits();
    void setUpToolbar();
    bool enterEdit(const std::function<void()>& edit);
    void changeCurrent(void (Designer::*operation)(std::size_t row));
    void moveCurrent(int rows);
    void click(const QModelIndex& cell);
    void editNext();
    void focusTitle();
    void paint();
    void showGrid();
    void showFile();
    void showCommands();

    std::unique_ptr<Ui::pollSetup2> ui;
    std::unique_ptr<SerialPort> MSComm1;
    QtTimer Timer1;
    QtTimer silence_;
    QtFileDialogs CommonDialog1;
    KeptDesigns kept_;
    Designer designer_;
    std::unique_ptr<GridModel> grid_;
    bool isClosingEditor_ = false;
    std::exception_ptr failedEdit_; ///< of the editor that is being closed
};

} // namespace zint
