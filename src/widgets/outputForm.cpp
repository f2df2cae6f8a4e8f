#include "widgets/outputForm.h"

#include "shared/fileError.h"
#include "widgets/radioGroups.h"
#include "widgets/windowPrinter.h"

namespace zint {

void outputForm::setUpBox(PlainTextBox& outBox)
{
    outBox_ = &outBox;
    enterRadioGroupsAtTheChosen(*this);
}

/// An exchange goes on while the user chooses a file.
void outputForm::onWrite(QAction* entry, OutputFile::Way way, OutputFile::Name name)
{
    onAsking(entry, &QAction::triggered, [this, way, name] {
        const OutputFile::Target target = output_.choose(way, name);
        gate().run([this, target] { write(target); });
    });
}

/// The gate tells why a file can't be written; the status must not go on saying that an earlier one was
/// saved.
void outputForm::write(const OutputFile::Target& target)
{
    if (target.path.empty())
        return;
    try {
        showStatus(output_.write(target, outBox_->text()));
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
