#include "designer/window/addParameters.h"

#include "designer/window/ui_addParameters.h"
#include "platform/rememberedSize.h"
#include "platform/text.h"
#include "widgets/display.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QSignalBlocker>

#include <algorithm>

namespace zint {

void ParameterModel::refresh(const ParameterListPanel& panel)
{
    const auto isSame = [](const auto& a, const auto& b) { return a.event == b.event; };
    if (std::ranges::equal(rows_, panel.rows, isSame)) {
        rows_ = panel.rows;
        if (!rows_.empty())
            Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
        return;
    }
    beginResetModel();
    rows_ = panel.rows;
    endResetModel();
}

int ParameterModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int ParameterModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(parameterHeadings.size());
}

QVariant ParameterModel::data(const QModelIndex& index, int role) const
{
    if (role != Qt::DisplayRole || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    return toQt(
        rows_.at(static_cast<std::size_t>(index.row())).cells.at(static_cast<std::size_t>(index.column())));
}

QVariant ParameterModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return alignment(false);
    return role == Qt::DisplayRole ? toQt(parameterHeadings.at(static_cast<std::size_t>(section)))
                                   : QVariant();
}

addParameters::addParameters(ParameterList& list, SettingsStore& settings, QWidget* parent)
    : QDialog(parent), ui(std::make_unique<Ui::addParameters>()), list_(list), settings_(settings)
{
    ui->setupUi(this);
    for (const std::string& group : list.panel().groups)
        ui->group->addItem(toQt(group));
    ui->parameters->setModel(&model_);
    QHeaderView* header = ui->parameters->horizontalHeader();
    header->setSectionsClickable(true);
    header->setSortIndicatorShown(true);
    header->setHighlightSections(false);
    constexpr int rowMargin = 8;
    ui->parameters->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + rowMargin);
    ui->search->installEventFilter(this);
    connect(ui->search, &QLineEdit::textChanged, this, [this](const QString& words) {
        list_.search(fromQt(words));
        selectFirst();
    });
    connect(ui->group, &QComboBox::activated, this,
            [this](int group) { list_.chooseGroup(static_cast<std::size_t>(group)); });
    connect(ui->metric, &QRadioButton::clicked, this, [this] { list_.chooseUnits(UnitSystem::metric); });
    connect(ui->imperial, &QRadioButton::clicked, this, [this] { list_.chooseUnits(UnitSystem::imperial); });
    connect(ui->onlySupported, &QCheckBox::clicked, this,
            [this](bool only) { list_.showOnlySupported(only); });
    connect(header, &QHeaderView::sectionClicked, this,
            [this](int column) { list_.sortBy(static_cast<ParameterColumn>(column)); });
    connect(ui->parameters, &QTableView::doubleClicked, this, &addParameters::addCom_Click);
    connect(ui->parameters->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &addParameters::showAddable);
    connect(&model_, &QAbstractItemModel::modelReset, this, &addParameters::showAddable);
    connect(ui->addCom, &QPushButton::clicked, this, &addParameters::addCom_Click);
    connect(ui->ownCom, &QPushButton::clicked, this, [this] { editOwn(); });
    connect(ui->closeCom, &QPushButton::clicked, this, &QDialog::reject);
    list_.onChanged = [this] { paint(); };
    paint();
    ui->parameters->resizeColumnsToContents();
    header->setSectionResizeMode(static_cast<int>(ParameterColumn::name), QHeaderView::Stretch);
    restoreSize(*this, settings_);
}

addParameters::~addParameters() { list_.onChanged = nullptr; }

void addParameters::done(int result)
{
    rememberSize(*this, settings_);
    QDialog::done(result);
}

/// From the words that are looked for, the arrow goes on to what was found.
bool addParameters::eventFilter(QObject* object, QEvent* event)
{
    if (object == ui->search && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Down) {
        ui->parameters->setFocus();
        if (!ui->parameters->selectionModel()->hasSelection())
            ui->parameters->selectRow(0);
        return true;
    }
    return QDialog::eventFilter(object, event);
}

void addParameters::addCom_Click()
{
    std::vector<std::size_t> rows;
    for (const QModelIndex& row : ui->parameters->selectionModel()->selectedRows())
        rows.push_back(static_cast<std::size_t>(row.row()));
    std::ranges::sort(rows);
    act([this, rows] { list_.add(rows); });
}

/// What was looked for is what Enter adds.
void addParameters::selectFirst()
{
    if (!ui->search->text().isEmpty() && model_.rowCount() > 0)
        ui->parameters->selectRow(0);
}

void addParameters::showAddable()
{
    ui->addCom->setEnabled(ui->parameters->selectionModel()->hasSelection());
}

void addParameters::paint()
{
    const ParameterListPanel& p = list_.panel();
    model_.refresh(p);
    ui->metric->setChecked(p.units == UnitSystem::metric);
    ui->imperial->setChecked(p.units == UnitSystem::imperial);
    ui->onlySupported->setEnabled(p.canShowSupported);
    ui->onlySupported->setChecked(p.isOnlySupported);
    ui->parameters->horizontalHeader()->setSortIndicator(
        static_cast<int>(p.sortedBy), p.isDescending ? Qt::DescendingOrder : Qt::AscendingOrder);
    display(*ui->supportHint, p.supportHint);
    display(*ui->statusBox, p.statusBox);
    showAddable();
}

} // namespace zint
