#include "designer/window/ownParametersForm.h"

#include "designer/window/ui_ownParametersForm.h"
#include "platform/rememberedSize.h"
#include "platform/text.h"
#include "widgets/dark.h"
#include "widgets/display.h"

#include <QCoreApplication>
#include <QInputMethodEvent>
#include <QSignalBlocker>

#include <algorithm>

namespace zint {
namespace {

QColor faultColour(const QPalette& palette) { return isDark(palette) ? QColor(0xef8379) : QColor(0xb3261e); }

/// Underlines the character of a box at which something is wrong; a negative place: none.
void underline(QLineEdit& box, int place)
{
    QList<QInputMethodEvent::Attribute> marks;
    if (place >= 0) {
        QTextCharFormat wavy;
        wavy.setUnderlineStyle(QTextCharFormat::WaveUnderline);
        wavy.setUnderlineColor(faultColour(box.palette()));
        wavy.setForeground(faultColour(box.palette()));
        marks.append({QInputMethodEvent::TextFormat, place - box.cursorPosition(), 1, wavy});
    }
    QInputMethodEvent event(QString(), marks);
    QCoreApplication::sendEvent(&box, &event);
}

/// Where a place in bytes is in the text that a box shows.
int placeIn(const QLineEdit& box, std::size_t bytes)
{
    const std::string text = fromQt(box.text());
    const auto place = static_cast<int>(toQt(text.substr(0, std::min(bytes, text.size()))).size());
    return std::min(place, std::max(static_cast<int>(box.text().size()) - 1, 0));
}

} // namespace

ownParametersForm::ownParametersForm(ToolContext& context, EventGate& gate, Prompts& prompts,
                                     Designer& designer, QWidget* parent)
    : QDialog(parent), ui(std::make_unique<Ui::ownParametersForm>()), context_(context), gate_(gate),
      MSComm1(context.shell.makePort(gate, context.shell.connection())), Timer1(gate), silence_(gate),
      editor_({.line = {*MSComm1, context.shell.connection(), Timer1, &silence_},
               .file = ParametersFile(context.userDataFolder),
               .prompts = prompts,
               .dialogs = CommonDialog1,
               .values = context.values,
               .usesOf = [&designer](std::int32_t number) { return designer.usesOf(number); },
               .onStored = [&designer] { designer.takeParameters(); }})
{
    ui->setupUi(this);
    using Field = decltype(ParameterFault::field);
    boxes_ = {
        {ui->name, ui->nameFault, Field::name, &OwnParameter::name, nullptr},
        {ui->shortName, ui->shortNameFault, Field::shortName, &OwnParameter::shortName, nullptr},
        {ui->request, ui->requestFault, Field::request, &OwnParameter::request, nullptr},
        {ui->header, ui->headerFault, Field::header, &OwnParameter::header, nullptr},
        {ui->filter, ui->filterFault, Field::filter, &OwnParameter::filter, nullptr},
        {ui->formula, ui->formulaFault, Field::formula, &OwnParameter::formula, nullptr},
        {ui->unit, ui->unitFault, Field::unit, &OwnParameter::unit, nullptr},
        {ui->minimum, ui->rangeFault, Field::range, nullptr, &OwnParametersPanel::minimum},
        {ui->maximum, nullptr, Field::range, nullptr, &OwnParametersPanel::maximum},
    };
    ui->formulaHint->setMinimumHeight(2 * fontMetrics().lineSpacing()); // stays whole as faults come and go
    connectBoxes();
    connectButtons();
    editor_.onChanged = [this] { paint(); };
    paint();
    restoreSize(*this, context_.settings);
}

ownParametersForm::~ownParametersForm() { editor_.onChanged = nullptr; }

void ownParametersForm::connectBoxes()
{
    for (const BoxEntry& entry : boxes_) {
        connect(entry.box, &QLineEdit::textEdited, this, [this, entry](const QString& text) {
            gate_.run([this, entry, typed = fromQt(text)] {
                if (entry.text != nullptr)
                    editor_.type(entry.text, typed);
                else
                    editor_.typeRange(entry.range, typed);
            });
        });
        connect(entry.box, &QLineEdit::editingFinished, this,
                [this] { gate_.run([this] { editor_.leaveField(); }); });
    }
    connect(ui->reply, &QPlainTextEdit::textChanged, this,
            [this] { gate_.run([this] { editor_.typeReply(fromQt(ui->reply->toPlainText())); }); });
    connect(ui->list, &QListWidget::currentRowChanged, this, [this](int row) {
        gate_.run([this, row] { editor_.select(static_cast<std::size_t>(std::max(row, 0))); });
    });
}

void ownParametersForm::connectButtons()
{
    const auto forward = [this](QPushButton* button, void (OwnParameterEditor::*operation)()) {
        connect(button, &QPushButton::clicked, this,
                [this, operation] { gate_.run([this, operation] { (editor_.*operation)(); }); });
    };
    forward(ui->newCom, &OwnParameterEditor::addNew);
    forward(ui->copyCom, &OwnParameterEditor::copy);
    forward(ui->deleteCom, &OwnParameterEditor::remove);
    forward(ui->importCom, &OwnParameterEditor::importFile);
    forward(ui->exportCom, &OwnParameterEditor::exportFile);
    forward(ui->readCom, &OwnParameterEditor::readFromCar);
    connect(ui->newCom, &QPushButton::clicked, this, [this] {
        ui->name->setFocus();
        ui->name->selectAll();
    });
    connect(ui->closeCom, &QPushButton::clicked, this, &QDialog::reject);
}

/// What can't be saved keeps the dialog open, if the user wants to go on.
void ownParametersForm::done(int result)
{
    if (gate_.isBusy())
        return; // a question is open
    bool mayClose = false;
    gate_.run([this, &mayClose] { mayClose = editor_.leave(); });
    if (!mayClose)
        return;
    rememberSize(*this, context_.settings);
    QDialog::done(result);
}

void ownParametersForm::paint()
{
    const OwnParametersPanel& p = editor_.panel();
    showList();
    showFields();
    display(*ui->hint, p.hint);
    const QSignalBlocker notTyped(ui->reply);
    if (const QString reply = toQtLines(p.reply); ui->reply->toPlainText() != reply)
        ui->reply->setPlainText(reply);
    display(*ui->outcome, p.outcome);
    display(*ui->statusBox, p.statusBox);
    ui->readCom->setEnabled(p.canRead);
    for (QWidget* control : std::initializer_list<QWidget*>{ui->copyCom, ui->deleteCom, ui->reply})
        control->setEnabled(p.current.has_value());
}

void ownParametersForm::showList()
{
    const OwnParametersPanel& p = editor_.panel();
    const QSignalBlocker notChosen(ui->list);
    while (ui->list->count() > static_cast<int>(p.list.size()))
        delete ui->list->takeItem(ui->list->count() - 1);
    for (std::size_t i = 0; i < p.list.size(); ++i) {
        const auto row = static_cast<int>(i);
        if (row < ui->list->count())
            ui->list->item(row)->setText(toQt(p.list[i]));
        else
            ui->list->addItem(toQt(p.list[i]));
    }
    ui->list->setCurrentRow(p.current ? static_cast<int>(*p.current) : -1);
}

void ownParametersForm::showFields()
{
    const OwnParametersPanel& p = editor_.panel();
    for (const BoxEntry& entry : boxes_) {
        entry.box->setEnabled(p.current.has_value());
        display(*entry.box, entry.text != nullptr ? p.fields.*entry.text : p.*entry.range);
        if (entry.fault != nullptr)
            showFault(entry);
    }
}

const ParameterFault* ownParametersForm::faultOf(const BoxEntry& entry) const
{
    const auto& faults = editor_.panel().faults;
    const auto found = std::ranges::find(faults, entry.field, &ParameterFault::field);
    return found != faults.end() ? &*found : nullptr;
}

void ownParametersForm::showFault(const BoxEntry& entry)
{
    const ParameterFault* fault = faultOf(entry);
    const bool isFormula = entry.box == ui->formula;
    display(*entry.fault, fault == nullptr ? ""
                          : isFormula
                              ? "At character " + std::to_string(fault->position + 1) + ": " + fault->text
                              : fault->text);
    QPalette colours;
    colours.setColor(QPalette::WindowText, faultColour(palette()));
    entry.fault->setPalette(colours);
    entry.fault->setVisible(fault != nullptr);
    if (isFormula) {
        ui->formulaHint->setVisible(fault == nullptr); // small screens have no room for both
        underline(*entry.box, fault != nullptr ? placeIn(*entry.box, fault->position) : -1);
    }
}

} // namespace zint
