#pragma once

#include "platform/qtFileDialogs.h"
#include "shared/outputFile.h"
#include "widgets/plainTextBox.h"
#include "widgets/toolForm.h"

namespace zint {

/// A window whose tool writes into a box of text: its user can select, print, save and append that.
class outputForm : public toolForm {
    Q_OBJECT

public:
    using toolForm::toolForm;

protected:
    /// Sets up what these windows have under the same names. @param ui the window's controls
    template <typename Controls>
    void setUpOutputTool(const Controls& ui)
    {
        setUpBox(*ui.outBox);
        onTrigger(ui.mnuSelect, &outputForm::mnuSelect_Click);
        onWrite(ui.mnuSaveOutput, OutputFile::Way::replace, OutputFile::Name::usual);
        onWrite(ui.mnuSaveOutputAs, OutputFile::Way::replace, OutputFile::Name::asked);
        onWrite(ui.mnuAppendOutput, OutputFile::Way::append, OutputFile::Name::usual);
        onWrite(ui.mnuAppendOutputAs, OutputFile::Way::append, OutputFile::Name::asked);
        setUpPrinting(ui.mnuPrintSetup, ui.mnuPrintOut);
        setUpTool(ui);
    }

    /// Shows what became of a file.
    virtual void showStatus(const std::string& text) = 0;

    bool printOn(QPrinter& printer) override;

private:
    void setUpBox(PlainTextBox& outBox);
    void mnuSelect_Click();
    void onWrite(QAction* entry, OutputFile::Way way, OutputFile::Name name);
    void write(const OutputFile::Target& target);

    PlainTextBox* outBox_ = nullptr;
    QtFileDialogs CommonDialog1{*this};
    OutputFile output_{CommonDialog1, context().values};
};

} // namespace zint
