#pragma once

#include "designer/designer.h"
#include "designer/ownParameterEditor.h"
#include "platform/qtFileDialogs.h"
#include "platform/qtTimer.h"
#include "widgets/toolContext.h"

#include <QDialog>

#include <functional>
#include <memory>
#include <vector>

class QLabel;
class QLineEdit;

namespace Ui {
class ownParametersForm;
} // namespace Ui

namespace zint {

/// The dialog in which the user defines own parameters.
class ownParametersForm final : public QDialog {
    Q_OBJECT

public:
    /// All but the parent outlive the dialog. What it does passes the gate.
    /// @throws FileError when the parameters can't be read
    ownParametersForm(ToolContext& context, EventGate& gate, Prompts& prompts, Designer& designer,
                      QWidget* parent);
    ~ownParametersForm() override;

    void done(int result) override;

private:
    /// A box of the parameter and what is told beside it.
    struct BoxEntry {
        QLineEdit* box;
        QLabel* fault; ///< null: the one of the box before
        decltype(ParameterFault::field) field;
        OwnParameterEditor::TextField text; ///< null: an end of the range
        OwnParameterEditor::RangeField range;
    };

    void connectBoxes();
    void connectButtons();
    void paint();
    void showList();
    void showFields();
    const ParameterFault* faultOf(const BoxEntry& entry) const;
    void showFault(const BoxEntry& entry);

    std::unique_ptr<Ui::ownParametersForm> ui;
    ToolContext& context_;
    EventGate& gate_;
    std::unique_ptr<SerialPort> MSComm1;
    QtTimer Timer1;
    QtTimer silence_;
    QtFileDialogs CommonDialog1{*this};
    OwnParameterEditor editor_;
    std::vector<BoxEntry> boxes_;
};

} // namespace zint
