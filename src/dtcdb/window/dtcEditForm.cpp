#include "dtcdb/window/dtcEditForm.h"

#include "dtcdb/window/ui_dtcEditForm.h"
#include "platform/text.h"
#include "widgets/display.h"

#include <QKeyEvent>

#include <algorithm>

namespace zint {
namespace {

/// Another program may keep the database busy for a while.
class BusyCursor {
public:
    explicit BusyCursor(QWidget& window) : window_(window) { window_.setCursor(Qt::WaitCursor); }
    BusyCursor(const BusyCursor&) = delete;
    BusyCursor& operator=(const BusyCursor&) = delete;
    ~BusyCursor() { window_.unsetCursor(); }

private:
    QWidget& window_;
};

} // namespace

dtcEditForm::dtcEditForm(ToolContext& context)
    : toolForm(context, "docdtce2"), ui(std::make_unique<Ui::dtcEditForm>()), CommonDialog1(*this),
      editor_({.prompts = prompts(), .dialogs = CommonDialog1, .values = context.values})
{
    ui->setupUi(this);
    boxes_ = {{{ui->DTCcode, &DtcRecord::code},
               {ui->DTCdescr, &DtcRecord::description},
               {ui->DTCnotes, &DtcRecord::notes}}};
    ui->DTCcode->setMaxLength(DtcDatabase::codeSize);
    ui->DTCdescr->setMaxLength(DtcDatabase::descriptionSize);
    ui->DTCnotes->setMaxLength(DtcDatabase::notesSize);
    ui->DTCsearchCode->setMaxLength(DtcDatabase::codeSize);
    connectControls();
    editor_.onChanged = [this] { paint(); };
    editor_.onFocus = [this](DtcEditor::Box box, std::optional<std::size_t> place) { focusBox(box, place); };
    setUpTool(*ui);
    paint();
    ui->DTCcontrol->setFocus();
}

dtcEditForm::~dtcEditForm() = default;

void dtcEditForm::Form_Unload() { editor_.unload(); }

/// The Return key presses the button that has the focus, else the one that belongs to the box.
void dtcEditForm::keyPressEvent(QKeyEvent* event)
{
    if (!isReturn(*event)) {
        toolForm::keyPressEvent(event);
        return;
    }
    QPushButton* button = nullptr;
    if (focusWidget() == ui->dtcDBname)
        button = ui->DTCcontrol;
    else if (focusWidget() == ui->DTCsearchCode)
        button = ui->DTCsearch;
    else if (std::ranges::find(boxes_, focusWidget(), &BoxEntry::edit) != boxes_.end())
        button = ui->DTCsave;
    pressFocused(button);
}

/// The boxes' colour is not the toolkit's while they only show.
void dtcEditForm::changeEvent(QEvent* event)
{
    toolForm::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        paintBoxes();
}

void dtcEditForm::DTCcontrol_Click()
{
    const BusyCursor busy(*this);
    editor_.pressControl();
    if (editor_.panel().canBrowse)
        ui->DTCsearchCode->setFocus();
    else if (editor_.panel().isOpen)
        ui->importDTC->setFocus();
}

void dtcEditForm::DTCsearch_Click()
{
    const BusyCursor busy(*this);
    editor_.pressSearch(fromQt(ui->DTCsearchCode->text()));
    ui->DTCsearchCode->selectAll();
}

void dtcEditForm::connectControls()
{
    const auto press = [this](QPushButton* button, void (DtcEditor::*operation)()) {
        on(button, &QPushButton::clicked, [this, operation] {
            const BusyCursor busy(*this);
            (editor_.*operation)();
        });
    };
    press(ui->browseDB, &DtcEditor::pressBrowseDb);
    press(ui->DTCfirst, &DtcEditor::pressFirst);
    press(ui->DTCprev, &DtcEditor::pressPrev);
    press(ui->DTCnext, &DtcEditor::pressNext);
    press(ui->DTClast, &DtcEditor::pressLast);
    press(ui->DTCadd, &DtcEditor::pressAdd);
    press(ui->DTCedit, &DtcEditor::pressEdit);
    press(ui->DTCsave, &DtcEditor::pressSave);
    press(ui->DTCcancel, &DtcEditor::pressCancel);
    press(ui->DTCdel, &DtcEditor::pressDelete);
    press(ui->undoDelete, &DtcEditor::pressUndoDelete);
    press(ui->findWords, &DtcEditor::pressFindWords);
    press(ui->browseText, &DtcEditor::pressBrowseText);
    press(ui->importDTC, &DtcEditor::pressImport);
    press(ui->exportDTC, &DtcEditor::pressExport);
    press(ui->skippedLines, &DtcEditor::showSkipped);
    onClick(ui->DTCcontrol, &dtcEditForm::DTCcontrol_Click);
    onClick(ui->DTCsearch, &dtcEditForm::DTCsearch_Click);
    on(ui->dtcDBname, &QLineEdit::textChanged,
       [this](const QString& text) { editor_.changeName(fromQt(text)); });
    on(ui->DTCtext, &QLineEdit::textChanged,
       [this](const QString& text) { editor_.changeTextFile(fromQt(text)); });
    for (const BoxEntry& entry : boxes_)
        on(entry.edit, &QLineEdit::textChanged,
           [this, box = entry.box](const QString& text) { editor_.type(box, fromQt(text)); });
    for (const QAbstractButton* option :
         std::initializer_list<QAbstractButton*>{ui->useComma, ui->useTab, ui->useSpace, ui->useLen,
                                                 ui->useCsv, ui->delimNotes, ui->dupOver, ui->noNotes})
        on(option, &QAbstractButton::toggled, [this] { takeOptions(); });
}

void dtcEditForm::takeOptions()
{
    DtcTextOptions options;
    if (ui->useTab->isChecked())
        options.fields = DtcFields::tab;
    else if (ui->useSpace->isChecked())
        options.fields = DtcFields::space;
    else if (ui->useLen->isChecked())
        options.fields = DtcFields::fixed;
    else if (ui->useCsv->isChecked())
        options.fields = DtcFields::csv;
    options.delimNotes = ui->delimNotes->isChecked();
    options.dupOver = ui->dupOver->isChecked();
    options.noNotes = ui->noNotes->isChecked();
    editor_.setOptions(options);
}

void dtcEditForm::focusBox(DtcEditor::Box box, std::optional<std::size_t> place)
{
    QLineEdit& edit = *std::ranges::find(boxes_, box, &BoxEntry::box)->edit;
    edit.setFocus();
    if (place)
        edit.setCursorPosition(static_cast<int>(*place));
    else
        edit.selectAll();
}

void dtcEditForm::paint()
{
    const DtcEditPanel& p = editor_.panel();
    display(*ui->DTCcontrol, p.DTCcontrol);
    display(*ui->dtcDBname, p.dtcDBname.text);
    ui->dtcDBname->setEnabled(p.dtcDBname.enabled);
    ui->browseDB->setEnabled(p.dtcDBname.enabled);
    ui->DTCframe->setTitle(toQt(p.DTCframe));
    paintBoxes();
    if (!p.isOpen)
        ui->DTCsearchCode->clear();
    for (QWidget* control :
         std::initializer_list<QWidget*>{ui->DTCfirst, ui->DTCprev, ui->DTCnext, ui->DTClast, ui->DTCsearch,
                                         ui->DTCsearchCode, ui->findWords})
        control->setEnabled(p.canBrowse);
    ui->DTCadd->setEnabled(p.canAdd);
    for (QPushButton* button : {ui->DTCedit, ui->DTCdel})
        button->setEnabled(p.canChange);
    for (QPushButton* button : {ui->DTCsave, ui->DTCcancel})
        button->setEnabled(p.isEditing);
    ui->undoDelete->setEnabled(p.canUndoDelete);
    display(*ui->DTCtext, p.DTCtext);
    ui->importDTC->setEnabled(p.canImport);
    ui->exportDTC->setEnabled(p.canExport);
    ui->skippedLines->setEnabled(p.canShowSkipped);
    ui->delimNotes->setEnabled(p.canDelimNotes);
    display(*ui->textHint, p.textHint);
    display(*ui->statusBox, p.statusBox);
}

void dtcEditForm::paintBoxes()
{
    const DtcEditPanel& p = editor_.panel();
    QPalette colours;
    if (!p.isEditing)
        colours.setBrush(QPalette::Base,
                         palette().brush(QPalette::Window)); // as text, not as a box to fill in
    for (const BoxEntry& entry : boxes_) {
        display(*entry.edit, p.record.*entry.box);
        entry.edit->setEnabled(p.isOpen);
        entry.edit->setReadOnly(!p.isEditing);
        entry.edit->setPalette(colours);
    }
}

} // namespace zint
