#include "app/portsForm.h"

#include "app/ui_portsForm.h"
#include "platform/text.h"

#include <QComboBox>
#include <QHeaderView>

namespace zint {

portsForm::portsForm(PortDirectory& directory, QWidget* parent)
    : QDialog(parent), ui(std::make_unique<Ui::portsForm>()), directory_(directory),
      detected_(directory.detected())
{
    ui->setupUi(this);
    listDetected();
    for (int number = 1; number <= PortDirectory::portCount; ++number) {
        choosers_.push_back(makeChooser(number));
        ui->assignedLayout->addRow(QStringLiteral("com&%1").arg(number), choosers_.back());
    }
}

portsForm::~portsForm() = default;

void portsForm::listDetected()
{
    for (const DetectedPort& port : detected_)
        new QTreeWidgetItem(ui->detectedPorts,
                            {toQt(port.location), toQt(port.description), toQt(port.usbIds)});
    if (detected_.empty()) {
        auto* none = new QTreeWidgetItem(ui->detectedPorts, {tr("none")});
        none->setDisabled(true);
    }
    ui->detectedPorts->header()->resizeSections(QHeaderView::ResizeToContents);
}

QComboBox* portsForm::makeChooser(int number)
{
    auto* chooser = new QComboBox(this);
    chooser->setObjectName(QStringLiteral("assigned%1").arg(number));
    chooser->setAccessibleName(tr("What com%1 stands for").arg(number));
    chooser->setEditable(true);
    chooser->setInsertPolicy(QComboBox::NoInsert);
    chooser->addItem(tr("Automatic"), QString());
    chooser->addItem(tr("Simulated vehicle"), toQt(PortDirectory::simulated));
    for (const DetectedPort& port : detected_)
        chooser->addItem(toQt(PortDirectory::Target{port.location, port.description, true}.text()),
                         toQt(port.location));

    const QString assigned = toQt(initial(number));
    const int known = chooser->findData(assigned);
    chooser->setCurrentIndex(known);
    if (known < 0)
        chooser->setEditText(assigned);
    return chooser;
}

std::string portsForm::initial(int number) const
{
    const std::string forThisRun = directory_.assignmentForThisRun(number);
    return forThisRun.empty() ? directory_.assignment(number) : forThisRun;
}

std::string portsForm::chosen(const QComboBox& chooser) const
{
    const QString text = chooser.currentText().trimmed();
    const int entry = chooser.findText(text);
    return fromQt(entry < 0 ? text : chooser.itemData(entry).toString());
}

void portsForm::accept()
{
    for (int number = 1; number <= PortDirectory::portCount; ++number) {
        const std::string location = chosen(*choosers_.at(static_cast<std::size_t>(number - 1)));
        if (location != initial(number))
            directory_.assign(number, location);
    }
    QDialog::accept();
}

} // namespace zint
