#include "launcher/window/portsForm.h"

#include "launcher/window/portWatch.h"
#include "launcher/window/ui_portsForm.h"
#include "platform/text.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace zint {
namespace {

const QLatin1String usualHost("192.168.0.10"); // of most adapters with a Wi-Fi of their own

QString networkEntry() { return portsForm::tr("Wi-Fi adapter..."); }

QString usualAdapter() { return QStringLiteral("tcp:%1:%2").arg(usualHost).arg(PortLocation::usualTcpPort); }

} // namespace

portsForm::portsForm(PortDirectory& directory, QWidget* parent, PortTester* tester)
    : QDialog(parent), ui(std::make_unique<Ui::portsForm>()), directory_(directory), tester_(tester),
      detected_(directory.detected())
{
    ui->setupUi(this);
    if (hasNumberedPorts)
        ui->hint->setText(
            ui->hint->text()
                .replace(QLatin1String("the path of a device such as"), QLatin1String("its name, such as"))
                .replace(QLatin1String("/dev/rfcomm0"), toQt(exampleDevice)));
    listDetected();
    for (const PortNumber port : allPorts)
        makeChooser(port);
    connect(&portWatch_, &QTimer::timeout, this, &portsForm::lookAtPorts);
    portWatch_.start(portWatchInterval);
}

portsForm::~portsForm() = default;

void portsForm::lookAtPorts()
{
    if (std::vector<DetectedPort> now = directory_.detected(); now != detected_) {
        detected_ = std::move(now);
        listDetected();
        for (const PortNumber port : allPorts)
            offer(port);
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

void portsForm::makeChooser(PortNumber port)
{
    const int number = static_cast<int>(port);
    auto* chooser = new QComboBox(this);
    chooser->setObjectName(QStringLiteral("assigned%1").arg(number));
    chooser->setAccessibleName(tr("What com%1 stands for").arg(number));
    chooser->setEditable(true);
    chooser->setInsertPolicy(QComboBox::NoInsert);
    chooser->setCompleter(nullptr); // it would make the beginning of a path the path of another port
    if (!directory_.assignmentForThisRun(port).empty())
        chooser->setToolTip(tr("Holds for this run. Choose it here to keep it."));
    addRow(port, chooser);

    const auto index = assignments_.size();
    assignments_.push_back({chooser});
    connect(chooser, &QComboBox::activated, this, [this, index] { touch(index); });
    connect(chooser->lineEdit(), &QLineEdit::textEdited, this, [this, index] { touch(index); });
    offer(port);
}

void portsForm::addRow(PortNumber port, QComboBox* chooser)
{
    const int number = static_cast<int>(port);
    auto* label = new QLabel(QStringLiteral("com&%1").arg(number), this);
    auto* row = new QHBoxLayout;
    label->setBuddy(chooser);
    row->addWidget(chooser, 1);
    if (tester_ != nullptr) {
        auto* button = new QPushButton(tr("Test"), this);
        button->setObjectName(QStringLiteral("test%1").arg(number));
        button->setAccessibleName(tr("Test com%1").arg(number));
        button->setAutoDefault(false); // Enter in a box is OK
        row->addWidget(button);
        connect(button, &QPushButton::clicked, this, [this, port] { test(port); });
    }
    ui->assignedLayout->addRow(label, row);
}

/// Tests what is chosen, though it is not assigned yet.
void portsForm::test(PortNumber port)
{
    const std::string location = chosen(*assignments_.at(static_cast<std::size_t>(port) - 1).chooser);
    const auto tell = [this, port](const std::string& line) {
        ui->outcome->setText(toQt(portName(port) + ": " + line));
        ui->outcome->setVisible(true);
    };
    tell("...");
    tester_->begin(port, location.empty() ? directory_.automaticTarget(port, detected_).location : location,
                   tell);
}

void portsForm::done(int result)
{
    if (tester_ != nullptr)
        tester_->stop();
    QDialog::done(result);
}

void portsForm::touch(std::size_t index)
{
    auto& [chooser, isTouched] = assignments_.at(index);
    isTouched = true;
    if (chooser->currentText() == networkEntry()) {
        chooser->setEditText(usualAdapter());
        const auto host = usualAdapter().indexOf(usualHost);
        chooser->lineEdit()->setSelection(static_cast<int>(host), static_cast<int>(usualHost.size()));
    }
    showProblem();
}

void portsForm::showProblem()
{
    ui->problem->setText(toQt(problem()));
    ui->problem->setVisible(!problem().empty());
    ui->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(problem().empty());
}

/// Why what the user chose or typed can't be assigned, empty where it can.
std::string portsForm::problem() const
{
    for (const PortNumber port : allPorts) {
        const auto& [chooser, isTouched] = assignments_.at(static_cast<std::size_t>(port) - 1);
        if (const PortLocation place = portLocation(chosen(*chooser)); isTouched && !place.problem.empty())
            return portName(port) + ": " + place.problem;
    }
    return {};
}

/// Where the user has chosen or typed nothing, the present assignment is shown.
void portsForm::offer(PortNumber port)
{
    const auto& [chooser, isTouched] = assignments_.at(static_cast<std::size_t>(port) - 1);
    const QString text = chooser->currentText();
    const std::string wanted = isTouched ? chosen(*chooser) : present(port);
    chooser->clear();
    chooser->addItem(tr("Automatic (%1)").arg(toQt(directory_.automaticTarget(port, detected_).text())),
                     QString());
    chooser->addItem(tr("Simulated vehicle"), toQt(PortDirectory::simulated));
    chooser->addItem(networkEntry());
    for (const DetectedPort& found : detected_)
        chooser->addItem(toQt(PortDirectory::Target{found.location, found.description, true}.text()),
                         toQt(found.location));
    if (const QString assigned = toQt(present(port)); chooser->findData(assigned) < 0)
        chooser->addItem(assigned, assigned);

    chooser->setCurrentIndex(chooser->findData(toQt(wanted)));
    if (chooser->currentIndex() < 0)
        chooser->setEditText(text);
}

std::string portsForm::present(PortNumber port) const
{
    const std::string forThisRun = directory_.assignmentForThisRun(port);
    return forThisRun.empty() ? directory_.assignment(port) : forThisRun;
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
    if (!problem().empty())
        return;
    for (const PortNumber port : allPorts) {
        const auto& [chooser, isTouched] = assignments_.at(static_cast<std::size_t>(port) - 1);
        if (isTouched)
            directory_.assign(port, chosen(*chooser));
    }
    QDialog::accept();
}

} // namespace zint
