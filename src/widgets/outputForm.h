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
    /// Connects the menu entries that belong to the box, by their names.
    void setUpOutputControls(PlainTextBox& outBox);

    /// Shows what became of a file.
    virtual void showStatus(const std::string& text) = 0;

    bool printOn(QPrinter& printer) override;

private:
    using Operation = std::string (OutputFile::*)(const std::string& text);

    void mnuSelect_Click();
    void write(Operation operation);

    PlainTextBox* outBox_ = nullptr;
    QtFileDialogs CommonDialog1{*this};
    OutputFile output_{CommonDialog1, context().values};
};

} // namespace zint
