#include "designer/window/pollSetup2.h"

#include "designer/designPrintout.h"
#include "designer/window/addParameters.h"
#include "designer/window/gridDelegate.h"
#include "designer/window/gridModel.h"
#include "designer/window/ownParametersForm.h"
#include "designer/window/ui_pollSetup2.h"
#include "platform/dateText.h"
#include "platform/text.h"
#include "widgets/display.h"
#include "widgets/windowPrinter.h"

#include <QActionGroup>
#include <QCloseEvent>
#include <QComboBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QSignalBlocker>

#include <algorithm>
#include <utility>

namespace zint {

pollSetup2::pollSetup2(ToolContext& context)
    : toolForm(context, "docpldsn2"), ui(std::make_unique<Ui::pollSetup2>()),
      MSComm1(context.shell.makePort(gate(), context.shell.connection())), Timer1(gate()), silence_(gate()),
      CommonDialog1(*this), kept_(context.userDataFolder, dateText),
      designer_({*MSComm1, context.shell.connection(), Timer1, &silence_}, context.design, prompts(),
                CommonDialog1, context.values, kept_, ParametersFile(context.userDataFolder)),
      grid_(std::make_unique<GridModel>(designer_,
                                        [this](const GridModel::Edit& edit) { return enterEdit(edit); }))
{
    ui->setupUi(this);
    setUpGrid();
    setUpToolbar();
    setUpUnits();
    connectActions();
    on(ui->autoSpeed, &QCheckBox::toggled, &pollSetup2::autoSpeed_Click);
    on(ui->pollSpeed, &QSlider::valueChanged, &pollSetup2::pollSpeed_Change);
    on(ui->pollTitle, &QLineEdit::textEdited, &pollSetup2::pollTitle_Change);
    ui->pollTitle->installEventFilter(this);
    constexpr int mostLines = 3; // of a line in a design file that knows no bounds
    ui->pollPrefix->setMaximumHeight(mostLines * fontMetrics().lineSpacing());
    designer_.closeEditor = [this] {
        try {
            endEditing();
        } catch (...) {
            gate().run([failure = std::current_exception()] { std::rethrow_exception(failure); });
        }
    };
    designer_.onChanged = [this] { paint(); };
    setUpPrinting(ui->mnuPrintSetup, ui->mnuPrint);
    setUpTool(*ui);
    gate().run([this] { designer_.load(); });
    ui->obdGrid->resizeColumnsToContents();
    QMetaObject::invokeMethod(
        this, [this] { gate().run([this] { designer_.tellLoadFailure(); }); }, Qt::QueuedConnection);
}

pollSetup2::~pollSetup2() = default;

void pollSetup2::Form_Unload()
{
    designer_.closeEditor(); // an edit that came later would be kept once more
    designer_.unload();
}

bool pollSetup2::printOn(QPrinter& printer)
{
    return printDocument(designPrintout(designer_.draft(), designer_.panel().fileLab,
                                        longDateText(std::chrono::system_clock::now())),
                         printer);
}

/// A cell that can't be read keeps the window open, for it would be lost with it.
void pollSetup2::closeEvent(QCloseEvent* event)
{
    bool mayClose = gate().isBusy(); // then the window closes later
    if (!mayClose)
        gate().run([this, &mayClose] {
            endEditing();
            mayClose = true;
        });
    if (mayClose)
        toolForm::closeEvent(event);
    else
        event->ignore();
}

/// The title takes back what was typed into it; when there is nothing, the step is one of the grid.
bool pollSetup2::eventFilter(QObject* object, QEvent* event)
{
    if (object == ui->pollTitle && event->type() == QEvent::ShortcutOverride) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if ((key->matches(QKeySequence::Undo) && !ui->pollTitle->isUndoAvailable()) ||
            (key->matches(QKeySequence::Redo) && !ui->pollTitle->isRedoAvailable())) {
            event->ignore();
            return true;
        }
    }
    return toolForm::eventFilter(object, event);
}

void pollSetup2::setUpGrid()
{
    auto* delegate = new GridDelegate(this);
    ui->obdGrid->setModel(grid_.get());
    ui->obdGrid->setItemDelegate(delegate);
    ui->obdGrid->setDropIndicatorShown(true);
    constexpr int rowMargin = 8; // leaves room for an editor's frame
    ui->obdGrid->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + rowMargin);
    connect(ui->obdGrid, &QTableView::clicked, this, &pollSetup2::click); // goes from cell to cell
    connect(grid_.get(), &GridModel::rowMoved, ui->obdGrid,
            [this](int row) { ui->obdGrid->setCurrentIndex(grid_->index(row, 0)); }); // shows what was done
    connect(delegate, &GridDelegate::finished, this, &pollSetup2::editNext);    // goes from cell to cell
    connect(delegate, &GridDelegate::abandoned, this, &pollSetup2::focusTitle); // moves the focus
    ui->obdGrid->setContextMenuPolicy(Qt::ActionsContextMenu);
    for (QAction* action : {ui->mnuAddParameters, ui->mnuAddNew, ui->mnuDuplicate, ui->mnuDeleteRow,
                            ui->mnuMoveUp, ui->mnuMoveDown}) {
        action->setShortcutContext(Qt::WidgetShortcut); // in a text these keys are the text's
        ui->obdGrid->addAction(action);
    }
    ui->mnuAddParameters->setShortcutContext(Qt::WindowShortcut); // no text box has a use for this key
    setUpHeader();
}

void pollSetup2::setUpHeader()
{
    QHeaderView* header = ui->obdGrid->horizontalHeader();
    header->setSectionsClickable(true);
    header->setSortIndicatorShown(true);
    header->setHighlightSections(false);
    header->setSectionResizeMode(static_cast<int>(GridColumn::code), QHeaderView::ResizeToContents);
    header->setSectionResizeMode(static_cast<int>(GridColumn::description), QHeaderView::Stretch);
    on(header, &QHeaderView::sectionClicked, [this](int column) {
        endEditing();
        designer_.sortBy(static_cast<GridColumn>(column));
    });
}

/// One of them is chosen, as a menu shows by a dot.
void pollSetup2::setUpUnits()
{
    auto* units = new QActionGroup(this);
    units->addAction(ui->mnuMetric);
    units->addAction(ui->mnuImperial);
    on(ui->mnuMetric, &QAction::triggered, [this] { designer_.useUnits(UnitSystem::metric); });
    on(ui->mnuImperial, &QAction::triggered, [this] { designer_.useUnits(UnitSystem::imperial); });
}

void pollSetup2::setUpToolbar()
{
    nameToolButtons(*ui->Toolbar1, {{ui->mnuDefault, "newDesign"},
                                    {ui->mnuSave, "saveDesign"},
                                    {ui->mnuOpen, "openDesign"},
                                    {ui->mnuPrint, "printDesign"},
                                    {ui->mnuDisable, "codeDisable"},
                                    {ui->mnuEnable, "codeEnable"},
                                    {ui->mnuAddParameters, "addParameters"},
                                    {ui->mnuAddNew, "addEvent"},
                                    {ui->mnuVerifyObd, "checkCodes"},
                                    {ui->mnuShowTimeline, "showTimeline"},
                                    {ui->mnuAutoOffset, "calcOffset"}});
}

void pollSetup2::connectActions()
{
    const auto forward = [this](QAction* action, void (Designer::*operation)()) {
        on(action, &QAction::triggered, [this, operation] { (designer_.*operation)(); });
    };
    forward(ui->mnuDefault, &Designer::newDesign);
    forward(ui->mnuOpen, &Designer::open);
    forward(ui->mnuSave, &Designer::save);
    forward(ui->mnuSaveAs, &Designer::saveAs);
    forward(ui->mnuRecover, &Designer::recover);
    forward(ui->mnuUndo, &Designer::undo);
    forward(ui->mnuRedo, &Designer::redo);
    forward(ui->mnuDisable, &Designer::disableAll);
    forward(ui->mnuEnable, &Designer::enableAll);
    forward(ui->mnuPurge, &Designer::commit);
    forward(ui->mnuInitSeq, &Designer::askInitSequence);
    forward(ui->mnuVerifyObd, &Designer::verifySupport);
    forward(ui->mnuAutoOffset, &Designer::calculateOffsets);
    forward(ui->mnuShowTimeline, &Designer::showTimeline);
    on(ui->mnuDuplicate, &QAction::triggered, [this] { changeCurrent(&Designer::duplicateRow); });
    on(ui->mnuDeleteRow, &QAction::triggered, [this] { changeCurrent(&Designer::removeRow); });
    on(ui->mnuMoveUp, &QAction::triggered, [this] { moveCurrent(-1); });
    on(ui->mnuMoveDown, &QAction::triggered, [this] { moveCurrent(1); });
    ui->mnuRedo->setShortcuts({Qt::CTRL | Qt::Key_Y, Qt::CTRL | Qt::SHIFT | Qt::Key_Z});
    on(ui->mnuDefinitions, &QAction::triggered, [this](bool with) { designer_.saveWithDefinitions(with); });
    onAsking(ui->mnuAddParameters, &QAction::triggered, [this] { mnuAddParameters_Click(); });
    onAsking(ui->mnuOwnParameters, &QAction::triggered, [this] { mnuOwnParameters_Click(this); });
    onTrigger(ui->mnuAddNew, &pollSetup2::mnuAddNew_Click);
    onClick(ui->comDone, &pollSetup2::comDone_Click);
    onClick(ui->labelStats, &pollSetup2::labelStats_Click);
}

void pollSetup2::mnuAddParameters_Click()
{
    gate().run([this] { designer_.takeParameters(); }); // a command may have changed them
    ParameterList list(designer_, context().values);
    addParameters dialog(list, context().settings, this);
    dialog.act = [this](const std::function<void()>& action) { gate().run(action); };
    dialog.editOwn = [&] {
        ask([&] { mnuOwnParameters_Click(&dialog); });
        list.refresh();
    };
    dialog.exec();
    gate().run([this] { paint(); });
}

void pollSetup2::mnuOwnParameters_Click(QWidget* parent)
{
    ownParametersForm(context(), gate(), prompts(), designer_, parent).exec();
}

void pollSetup2::mnuAddNew_Click()
{
    if (!designer_.addNew())
        return;
    const QModelIndex description =
        grid_->index(grid_->rowCount() - 1, static_cast<int>(GridColumn::description));
    ui->obdGrid->setCurrentIndex(description);
    ui->obdGrid->edit(description);
}

void pollSetup2::comDone_Click()
{
    designer_.commit();
    context().shell.switchTo(Tool::pollRunner);
    close();
}

void pollSetup2::labelStats_Click() { designer_.showStatistics(); }

void pollSetup2::changeCurrent(void (Designer::*operation)(std::size_t row))
{
    if (const QModelIndex current = ui->obdGrid->currentIndex(); current.isValid())
        (designer_.*operation)(static_cast<std::size_t>(current.row()));
}

/// Moves the current row up (-1) or down (1).
void pollSetup2::moveCurrent(int rows)
{
    const QModelIndex current = ui->obdGrid->currentIndex();
    const QModelIndex target = current.siblingAtRow(current.row() + rows);
    if (!target.isValid())
        return;
    const auto from = static_cast<std::size_t>(current.row());
    const auto to = static_cast<std::size_t>(target.row());
    designer_.moveRow(from, to > from ? to + 1 : to);
    ui->obdGrid->setCurrentIndex(target);
}

void pollSetup2::autoSpeed_Click(bool checked) { designer_.clickAutoSpeed(checked); }

void pollSetup2::pollSpeed_Change(int position) { designer_.movePollSpeed(position); }

void pollSetup2::pollTitle_Change(const QString& title) { designer_.setTitle(fromQt(title)); }

/// An edit is an event of its own, or part of the one that closes its editor. @return whether it succeeded
bool pollSetup2::enterEdit(const GridModel::Edit& edit)
{
    if (!isClosingEditor_) {
        const auto succeeded = std::make_shared<bool>(false); // the edit may have to wait at the gate
        gate().run([edit, succeeded] {
            edit();
            *succeeded = true;
        });
        return *succeeded;
    }
    try {
        edit();
        return true;
    } catch (...) { // the toolkit's code lies between here and closeEditor()
        failedEdit_ = std::current_exception();
        return false;
    }
}

/// Opens the editor of a cell, and the list of one that has a list.
void pollSetup2::click(const QModelIndex& cell)
{
    if (!(cell.flags() & Qt::ItemIsEditable))
        return;
    ui->obdGrid->edit(cell);
    if (auto* chooser = qobject_cast<QComboBox*>(ui->obdGrid->indexWidget(cell)))
        chooser->showPopup();
}

/// What is being edited counts before anything else is done with the grid. If it can't be read, nothing is.
void pollSetup2::endEditing()
{
    QWidget* editor = ui->obdGrid->indexWidget(ui->obdGrid->currentIndex());
    if (editor == nullptr)
        return;
    QAbstractItemDelegate* delegate = ui->obdGrid->itemDelegate();
    isClosingEditor_ = true;
    Q_EMIT delegate->commitData(editor);
    isClosingEditor_ = false;
    Q_EMIT delegate->closeEditor(editor);
    if (const std::exception_ptr failure = std::exchange(failedEdit_, nullptr))
        std::rethrow_exception(failure);
}

/// The next cell of the row; behind the last one the next row's first; behind the last row the title.
void pollSetup2::editNext()
{
    QModelIndex next = ui->obdGrid->currentIndex().siblingAtColumn(ui->obdGrid->currentIndex().column() + 1);
    if (!next.isValid())
        next = grid_->index(ui->obdGrid->currentIndex().row() + 1, static_cast<int>(GridColumn::description));
    if (!next.isValid()) {
        focusTitle();
        return;
    }
    ui->obdGrid->setCurrentIndex(next);
    ui->obdGrid->edit(next);
}

/// What was typed into the title before can't be taken back then, so that undoing goes on in the grid.
void pollSetup2::focusTitle()
{
    ui->pollTitle->setText(ui->pollTitle->text());
    ui->pollTitle->setFocus();
}

void pollSetup2::paint()
{
    const DesignerPanel& p = designer_.panel();
    display(*ui->statusBox, p.statusBox);
    display(*ui->labelStats, {.caption = p.labelStats});
    showFile();
    showCommands();
    display(*ui->sampleDsp, p.sampleDsp);
    display(*ui->costLab, p.costLab);
    if (const QString title = toQt(p.pollTitle); ui->pollTitle->text() != title)
        ui->pollTitle->setText(title);
    const QSignalBlocker notClicked(ui->autoSpeed); // shown, not changed
    ui->autoSpeed->setChecked(p.autoSpeed);
    const QSignalBlocker notMoved(ui->pollSpeed);
    ui->pollSpeed->setValue(p.pollSpeed.value);
    ui->pollSpeed->setEnabled(p.pollSpeed.enabled);
    ui->mnuUndo->setEnabled(p.canUndo);
    ui->mnuRedo->setEnabled(p.canRedo);
    ui->mnuMetric->setChecked(p.units == UnitSystem::metric);
    ui->mnuImperial->setChecked(p.units == UnitSystem::imperial);
    ui->mnuDefinitions->setChecked(p.savesDefinitions);
    setWindowModified(p.isModified);
    showGrid();
}

/// A rebuilt grid has its first cell as the current one.
void pollSetup2::showGrid()
{
    if (grid_->refresh() || !ui->obdGrid->currentIndex().isValid())
        ui->obdGrid->setCurrentIndex(grid_->index(0, 0));
    const auto& sorting = designer_.panel().sorting;
    ui->obdGrid->horizontalHeader()->setSortIndicator(sorting ? static_cast<int>(sorting->column) : -1,
                                                      sorting && sorting->descending ? Qt::DescendingOrder
                                                                                     : Qt::AscendingOrder);
}

void pollSetup2::showFile()
{
    constexpr int mostCharacters = 40;
    const DesignerPanel& p = designer_.panel();
    ui->fileLab->setText(fontMetrics().elidedText(toQt(p.fileLab), Qt::ElideMiddle,
                                                  mostCharacters * fontMetrics().averageCharWidth()));
    ui->fileLab->setToolTip(tipText(p.filePath));
    ui->fileLab->setVisible(!p.fileLab.empty());
}

void pollSetup2::showCommands()
{
    const std::string& commands = designer_.panel().pollPrefix;
    ui->pollPrefix->setText(toQt(commands).replace(u';', QStringLiteral(";\u200B"))); // a line may end there
    ui->pollPrefix->setToolTip(tipText(commands)); // there may be more than fit
    ui->pollPrefix->setVisible(!commands.empty());
    ui->prefixLabel->setVisible(!commands.empty());
}

} // namespace zint
