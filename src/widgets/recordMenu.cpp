#include "widgets/recordMenu.h"

#include "platform/qtFileDialogs.h"
#include "platform/text.h"
#include "shared/textFile.h"
#include "widgets/display.h"

#include <QAction>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

namespace zint {
namespace {

constexpr const char* proposedName = "transcript.txt";

} // namespace

RecordMenu::RecordMenu(QMainWindow& window, WireRecord& record, ProgramValues& values, Prompts& prompts)
    : window_(window), record_(record), values_(values), prompts_(prompts)
{
}

RecordMenu::Entries RecordMenu::addTo(QMenu& help)
{
    help.addSeparator();
    entry_ = help.addAction(QString());
    entry_->setObjectName(QStringLiteral("mnuRecord"));
    entry_->setCheckable(true);
    QAction* const save = help.addAction(window_.tr("&Save Last Exchange..."));
    save->setObjectName(QStringLiteral("mnuSaveExchange"));
    mark_ = new QLabel(&window_);
    mark_->setObjectName(QStringLiteral("recordingLab"));
    mark_->setTextFormat(Qt::PlainText);
    window_.menuBar()->setCornerWidget(mark_);
    refresh();
    return {.record = entry_, .save = save};
}

void RecordMenu::refresh()
{
    if (entry_ == nullptr)
        return;
    const bool isOn = !record_.path().empty();
    entry_->setText(isOn ? window_.tr("Stop &Recording") : window_.tr("&Record Transcript..."));
    entry_->setChecked(isOn);
    mark_->setText(isOn ? window_.tr("Recording ") : QString());
    mark_->setToolTip(tipText(record_.path()));
    mark_->setVisible(isOn);
}

RecordMenu::Target RecordMenu::ask(const std::string& title)
{
    const auto chosen = prompts_.choose("The transcript holds all that goes to the adapter and comes back.",
                                        title, {"Leave out the vehicle's identity", "Keep it whole"});
    if (!chosen)
        return {};
    return {.path = QtFileDialogs(window_).chooseToSave(textFileKinds, values_.parmInitDir, proposedName),
            .identity = *chosen == 0 ? WireRecord::Identity::leftOut : WireRecord::Identity::kept};
}

bool RecordMenu::write(const Target& target, const std::function<void()>& writing)
{
    if (target.path.empty())
        return false;
    try {
        writing();
    } catch (const FileError& error) {
        prompts_.message(error.what());
        return false;
    }
    values_.rememberFolderOf(target.path);
    return true;
}

void RecordMenu::recordOrStop()
{
    if (!record_.path().empty()) {
        record_.stop();
    } else {
        const Target target = ask("Record Transcript");
        write(target, [&] { record_.start(target.path, target.identity); });
    }
    refresh();
}

void RecordMenu::saveLastExchange()
{
    if (!record_.hasExchange()) {
        prompts_.message("Nothing has been sent to an adapter yet.");
        return;
    }
    const Target target = ask("Save Last Exchange");
    write(target, [&] {
        replaceFile(target.path,
                    [&](std::ostream& stream) { stream << record_.lastExchange(target.identity); });
    });
}

} // namespace zint
