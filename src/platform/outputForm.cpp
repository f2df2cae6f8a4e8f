#include "platform/outputForm.h"

#include "platform/windowPrinter.h"

namespace zint {

void outputForm::setUpOutputControls(PlainTextBox& outBox)
{
    outBox_ = &outBox;
    onTrigger(findChild<QAction*>(QStringLiteral("mnuSelect")), &outputForm::mnuSelect_Click);
    const auto write = [this](const char* action, std::string (OutputFile::*operation)(const std::string&)) {
        connect(findChild<QAction*>(QLatin1String(action)), &QAction::triggered, this, [this, operation] {
            gate().run([this, operation] {
                const std::string told = (output_.*operation)(outBox_->text());
                if (!told.empty())
                    showStatus(told);
            });
        });
    };
    write("mnuSaveOutput", &OutputFile::save);
    write("mnuSaveOutputAs", &OutputFile::saveAs);
    write("mnuAppendOutput", &OutputFile::append);
    write("mnuAppendOutputAs", &OutputFile::appendAs);
}

bool outputForm::printOn(QPrinter& printer) { return printText(outBox_->text(), printer); }

void outputForm::mnuSelect_Click()
{
    outBox_->setFocus();
    outBox_->selectAll();
}

} // namespace zint
