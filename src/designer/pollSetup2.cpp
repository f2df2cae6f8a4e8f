#include "designer/pollSetup2.h"

#include "designer/designPrintout.h"
#include "designer/gridDelegate.h"
#include "designer/gridModel.h"
#include "designer/ui_pollSetup2.h"
#include "platform/dateText.h"
#include "platform/text.h"
#include "platform/windowPrinter.h"

#include <QDateTime>
#include <QHeaderView>
#include <QLocale>
#include <QSignalBlocker>

#include <utility>

namespace zint {

pollSetup2::pollSetup2(ToolContext& context)
    : toolForm(context, "docpldsn2"), ui(std::make_unique<Ui::pollSetup2>()),
      MSComm1(context.makePort(gate(), context.connection())), Timer1(gate()), CommonDialog1(*this),
      kept_(context.userDataFolder + "/designs", dateText),
      designer_(*MSComm1, Timer1, context.connection(), context.design, prompts(), CommonDialog1,
                context.values, kept_),
      grid_(std::make_unique<GridModel>(designer_,
                                        [this](const GridModel::Edit& edit) { return enterEdit(edit); }))
{
    ui->setupUi(this);
    setUpGrid();
    setUpToolbar();
    connectActions();
    connect(ui->autoSpeed, &QCheckBox::clicked, this, &pollSetup2::autoSpeed_Click);
    connect(ui->pollSpeed, &QSlider::valueChanged, this, &pollSetup2::pollSpeed_Change);
    connect(ui->pollTitle, &QLineEdit::textEdited, this, &pollSetup2::pollTitle_Change);
    designer_.closeEditor = [this] { closeEditor(); };
    designer_.onChanged = [this] { paint(); };
    setUpCommonControls();
    gate().run([this] { designer_.load(); });
    ui->obdGrid->resizeColumnsToContents();
}

pollSetup2::~pollSetup2() = default;

void pollSetup2::Form_Unload() { designer_.unload(); }

bool pollSetup2::printOn(QPrinter& printer)
{
    const QString date =
        QLocale::c().toString(QDateTime::currentDateTime(), QStringLiteral("dddd, MMMM dd, yyyy hh:mm AP"));
    return printDocument(
        designPrintout(designer_.panel().obdGrid, context().design.sampleSpeed, fromQt(date)), printer);
}

void pollSetup2::setUpGrid()
{
    auto* delegate = new GridDelegate(this);
    ui->obdGrid->setModel(grid_.get());
    ui->obdGrid->setItemDelegate(delegate);
    ui->obdGrid->setDropIndicatorShown(true);
    constexpr int rowMargin = 8; // leaves room for an editor's frame
    ui->obdGrid->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + rowMargin);
    connect(ui->obdGrid, &QTableView::clicked, ui->obdGrid, [this](const QModelIndex& cell) {
        if (cell.flags() & Qt::ItemIsEditable)
            ui->obdGrid->edit(cell);
    });
    connect(grid_.get(), &GridModel::rowMoved, ui->obdGrid,
            [this](int row) { ui->obdGrid->setCurrentIndex(grid_->index(row, 0)); });
    connect(delegate, &GridDelegate::finished, this, &pollSetup2::editNext);
    connect(delegate, &GridDelegate::abandoned, ui->pollTitle, [this] { ui->pollTitle->setFocus(); });
    QHeaderView* header = ui->obdGrid->horizontalHeader();
    header->setSectionsClickable(true);
    header->setHighlightSections(false);
    header->setSectionResizeMode(static_cast<int>(GridColumn::description), QHeaderView::Stretch);
    connect(header, &QHeaderView::sectionClicked, this, [this](int column) {
        gate().run([this, column] {
            closeEditor();
            designer_.sortBy(static_cast<GridColumn>(column));
        });
    });
}

void pollSetup2::setUpToolbar()
{
    nameToolButtons(*ui->Toolbar1, {{ui->mnuDefault, "newDesign"},
                                    {ui->mnuSave, "saveDesign"},
                                    {ui->mnuOpen, "openDesign"},
                                    {ui->mnuPrint, "printDesign"},
                                    {ui->mnuDisable, "codeDisable"},
                                    {ui->mnuEnable, "codeEnable"},
                                    {ui->mnuVerifyObd, "checkCodes"},
                                    {ui->mnuShowTimeline, "showTimeline"},
                                    {ui->mnuAutoOffset, "calcOffset"}});
}

void pollSetup2::connectActions()
{
    const auto forward = [this](QAction* action, void (Designer::*operation)()) {
        connect(action, &QAction::triggered, this, [this, operation] {
            gate().run([this, operation] {
                closeEditor();
                (designer_.*operation)();
            });
        });
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
    connect(ui->mnuMoveUp, &QAction::triggered, this, [this] { moveCurrent(-1); });
    connect(ui->mnuMoveDown, &QAction::triggered, this, [this] { moveCurrent(1); });
    ui->mnuRedo->setShortcuts({Qt::CTRL | Qt::Key_Y, Qt::CTRL | Qt::SHIFT | Qt::Key_Z});
    onTrigger(ui->mnuAddNew, &pollSetup2::mnuAddNew_Click);
    onClick(ui->comDone, &pollSetup2::comDone_Click);
    ui->comDone->setEnabled(context().goPolling != nullptr);
}

void pollSetup2::mnuAddNew_Click()
{
    closeEditor();
    if (!designer_.addNew())
        return;
    const QModelIndex description =
        grid_->index(grid_->rowCount() - 1, static_cast<int>(GridColumn::description));
    ui->obdGrid->setCurrentIndex(description);
    ui->obdGrid->edit(description);
}

void pollSetup2::comDone_Click()
{
    closeEditor();
    designer_.commit();
    context().goPolling();
    close();
}

/// Moves the current row up (-1) or down (1).
void pollSetup2::moveCurrent(int rows)
{
    gate().run([this, rows] {
        closeEditor();
        const QModelIndex current = ui->obdGrid->currentIndex();
        const QModelIndex target = current.siblingAtRow(current.row() + rows);
        if (!target.isValid())
            return;
        const auto from = static_cast<std::size_t>(current.row());
        const auto to = static_cast<std::size_t>(target.row());
        designer_.moveRow(from, to > from ? to + 1 : to);
        ui->obdGrid->setCurrentIndex(target);
    });
}

void pollSetup2::autoSpeed_Click(bool checked)
{
    gate().run([this, checked] { designer_.clickAutoSpeed(checked); });
}

void pollSetup2::pollSpeed_Change(int position)
{
    gate().run([this, position] { designer_.movePollSpeed(position); });
}

void pollSetup2::pollTitle_Change(const QString& title)
{
    gate().run([this, text = fromQt(title)] { designer_.setTitle(text); });
}

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

/// What is being edited counts before anything else is done with the grid. If it can't be read, nothing is.
void pollSetup2::closeEditor()
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
        ui->pollTitle->setFocus();
        return;
    }
    ui->obdGrid->setCurrentIndex(next);
    ui->obdGrid->edit(next);
}

void pollSetup2::paint()
{
    const DesignerPanel& p = designer_.panel();
    display(*ui->statusBox, p.statusBox);
    display(*ui->labelStats, p.labelStats);
    for (const auto& [label, text] : {std::pair{ui->fileLab, p.fileLab}, {ui->pollPrefix, p.pollPrefix}}) {
        display(*label, text);
        label->setVisible(!text.empty());
    }
    display(*ui->sampleDsp, p.sampleDsp);
    display(*ui->costLab, p.costLab);
    if (const QString title = toQt(p.obdGrid.title); ui->pollTitle->text() != title)
        ui->pollTitle->setText(title);
    ui->autoSpeed->setChecked(p.autoSpeed);
    const QSignalBlocker quiet(ui->pollSpeed); // shown, not moved
    ui->pollSpeed->setValue(p.pollSpeed.value);
    ui->pollSpeed->setEnabled(p.pollSpeed.enabled);
    ui->mnuUndo->setEnabled(p.canUndo);
    ui->mnuRedo->setEnabled(p.canRedo);
    grid_->refresh();
}

} // namespace zint
