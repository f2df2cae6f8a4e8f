#include "widgets/outputForm.h"

#include "shared/fileError.h"
#include "widgets/radioGroups.h"
#include "widgets/windowPrinter.h"

namespace zint {

void outputForm::setUpOutputControls(PlainTextBox& outBox)
{
    outBox_ = &outBox;
    enterRadioGroupsAtTheChosen(*this);
    onTrigger(findChild<QAction*>(QStringLiteral("mnuSelect")), &outputForm::mnuSelect_Click);
    const auto onWrite = [this](const char* action, Operation operation) {
        connect(findChild<QAction*>(QLatin1String(action)), &QAction::triggered, this,
                [this, operation] { gate().run([this, operation] { write(operation); }); });
    };
    onWrite("mnuSaveOutput", &OutputFile::save);
    onWrite("mnuSaveOutputAs", &OutputFile::saveAs);
    onWrite("mnuAppendOutput", &OutputFile::append);
    onWrite("mnuAppendOutputAs", &OutputFile::appendAs);
}

/// The gate tells why a file can't be written; the status must not go on saying that an earlier one was
/// saved.
void outputForm::write(Operation operation)
{
    try {
        const std::string told = (output_.*operation)(outBox_->text());
        if (!told.empty())
            showStatus(told);
    } catch (const FileError&) {
        showStatus("The output was not saved");
        throw;
    }
}

bool outputForm::printOn(QPrinter& printer) { return printText(outBox_->text(), printer); }

void outputForm::mnuSelect_Click()
{
    outBox_->setFocus();
    outBox_->selectAll();
}

} // namespace zint
