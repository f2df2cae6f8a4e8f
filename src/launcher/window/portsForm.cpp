#include "launcher/window/portsForm.h"

#include "launcher/window/portWatch.h"
#include "launcher/window/ui_portsForm.h"
#include "platform/text.h"

#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>

namespace zint {

portsForm::portsForm(PortDirectory& directory, QWidget* parent)
    : QDialog(parent), ui(std::make_unique<Ui::portsForm>()), directory_(directory),
      detected_(directory.detected())
{
    ui->setupUi(this);
    listDetected();
    for (int number = 1; number <= PortDirectory::portCount; ++number)
        makeChooser(number);
    connect(&portWatch_, &QTimer::timeout, this, &portsForm::lookAtPorts);
    portWatch_.start(portWatchInterval);
}

portsForm::~portsForm() = default;

void portsForm::lookAtPorts()
{
    if (std::vector<DetectedPort> now = directory_.detected(); now != detected_) {
        detected_ = std::move(now);
        listDetected();
        for (int number = 1; number <= PortDirectory::portCount; ++number)
            offer(number);
    }
}

void portsForm::listDetected()
{
    ui->detectedPorts->clear();
    for (const DetectedPort& port : detected_)
        new QTreeWidgetItem(ui->detectedPorts,
                            {toQt(port.location), toQt(port.description), toQt(port.usbIds)});
    if (detected_.empty()) {
        auto* none = new QTreeWidgetItem(ui->detectedPorts, {tr("none")});
        none->setDisabled(true);
    }
    ui->detectedPorts->header()->resizeSections(QHeaderView::ResizeToContents);
}

void portsForm::makeChooser(int number)
{
    auto* chooser = new QComboBox(this);
    chooser->setObjectName(QStringLiteral("assigned%1").arg(number));
    chooser->setAccessibleName(tr("What com%1 stands for").arg(number));
    chooser->setEditable(true);
    chooser->setInsertPolicy(QComboBox::NoInsert);
    chooser->setCompleter(nullptr); // it would make the beginning of a path the path of another port
    if (!directory_.assignmentForThisRun(number).empty())
        chooser->setToolTip(tr("Holds for this run. Choose it here to keep it."));
    ui->assignedLayout->addRow(QStringLiteral("com&%1").arg(number), chooser);

    const auto index = assignments_.size();
    assignments_.push_back({chooser});
    const auto touch = [this, index] { assignments_[index].isTouched = true; };
    connect(chooser, &QComboBox::activated, this, touch);
    connect(chooser->lineEdit(), &QLineEdit::textEdited, this, touch);
    offer(number);
}

/// Where the user has chosen or typed nothing, the present assignment is shown.
void portsForm::offer(int number)
{
    const auto& [chooser, isTouched] = assignments_.at(static_cast<std::size_t>(number - 1));
    const QString text = chooser->currentText();
    const std::string wanted = isTouched ? chosen(*chooser) : present(number);
    chooser->clear();
    chooser->addItem(tr("Automatic (%1)").arg(toQt(directory_.automaticTarget(number, detected_).text())),
                     QString());
    chooser->addItem(tr("Simulated vehicle"), toQt(PortDirectory::simulated));
    for (const DetectedPort& port : detected_)
        chooser->addItem(toQt(PortDirectory::Target{port.location, port.description, true}.text()),
                         toQt(port.location));
    if (const QString assigned = toQt(present(number)); chooser->findData(assigned) < 0)
        chooser->addItem(assigned, assigned);

    chooser->setCurrentIndex(chooser->findData(toQt(wanted)));
    if (chooser->currentIndex() < 0)
        chooser->setEditText(text);
}

std::string portsForm::present(int number) const
{
    const std::string forThisRun = directory_.assignmentForThisRun(number);
    return forThisRun.empty() ? directory_.assignment(number) : forThisRun;
}

/// The location of the entry that is shown, or the one that was typed: a path, or the word for an entry that
/// has none.
std::string portsForm::chosen(const QComboBox& chooser)
{
    const QString text = chooser.currentText().trimmed();
    if (text.compare(tr("Automatic"), Qt::CaseInsensitive) == 0)
        return {};
    for (const QString& word : {toQt(PortDirectory::simulated), tr("Simulated vehicle")}) {
        if (text.compare(word, Qt::CaseInsensitive) == 0)
            return std::string(PortDirectory::simulated);
    }
    const int entry = chooser.findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
    return fromQt(entry < 0 ? text : chooser.itemData(entry).toString());
}

void portsForm::accept()
{
    for (int number = 1; number <= PortDirectory::portCount; ++number) {
        const auto& [chooser, isTouched] = assignments_.at(static_cast<std::size_t>(number - 1));
        if (isTouched)
            directory_.assign(number, chosen(*chooser));
    }
    QDialog::accept();
}

} // namespace zint
