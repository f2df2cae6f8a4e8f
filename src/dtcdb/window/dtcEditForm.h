#pragma once

#include "dtcdb/dtcEditor.h"
#include "platform/qtFileDialogs.h"
#include "widgets/toolForm.h"

#include <array>
#include <memory>

class QLineEdit;

namespace Ui {
class dtcEditForm;
} // namespace Ui

namespace zint {

/// The description editor's window.
class dtcEditForm final : public toolForm {
    Q_OBJECT

public:
    explicit dtcEditForm(ToolContext& context);
    ~dtcEditForm() override;

private:
    /// A box of the record.
    struct BoxEntry {
        QLineEdit* edit;
        DtcEditor::Box box;
    };

    void Form_Unload() override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

    void DTCcontrol_Click();
    void DTCsearch_Click();

    void connectControls();
    void takeOptions();
    void focusBox(DtcEditor::Box box, std::optional<std::size_t> place);
    void paint();
    void paintBoxes();

    std::unique_ptr<Ui::dtcEditForm> ui;
    QtFileDialogs CommonDialog1;
    DtcEditor editor_;
    std::array<BoxEntry, 3> boxes_{};
};

} // namespace zint
