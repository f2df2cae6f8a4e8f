#include "designer/window/gridModel.h"

#include "platform/text.h"
#include "widgets/display.h"

#include <QGuiApplication>
#include <QMimeData>
#include <QPalette>

#include <algorithm>
#include <iterator>
#include <utility>

namespace zint {
namespace {

const QString rowType = QStringLiteral("application/x-zint-design-row");

QVariant alignmentOf(int column)
{
    return alignment(gridHeadings.at(static_cast<std::size_t>(column)).alignedRight);
}

} // namespace

GridModel::GridModel(Designer& designer, std::function<bool(const Edit&)> enter)
    : designer_(designer), enter_(std::move(enter))
{
}

bool GridModel::refresh()
{
    const DesignerPanel& panel = designer_.panel();
    if (std::exchange(rebuilds_, panel.rebuilds) != panel.rebuilds) {
        beginResetModel();
        rows_ = panel.obdGrid;
        endResetModel();
        return true;
    }
    takeRowCount(panel.obdGrid);
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        if (rows_[i] == panel.obdGrid[i] && rows_[i].own == panel.obdGrid[i].own)
            continue;
        rows_[i] = panel.obdGrid[i];
        const auto row = static_cast<int>(i);
        Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
    }
    return false;
}

/// Adds or removes rows where the first difference is.
void GridModel::takeRowCount(const GridRows& rows)
{
    const auto difference = std::ranges::mismatch(rows_, rows).in1;
    const auto first = static_cast<int>(difference - rows_.begin());
    const auto more = std::ssize(rows) - std::ssize(rows_);
    if (more > 0) {
        beginInsertRows({}, first, first + static_cast<int>(more) - 1);
        rows_.insert(difference, rows.begin() + first, rows.begin() + first + more);
        endInsertRows();
    } else if (more < 0) {
        beginRemoveRows({}, first, first - static_cast<int>(more) - 1);
        rows_.erase(difference, difference - more);
        endRemoveRows();
    }
}

int GridModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int GridModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(gridHeadings.size());
}

QStringList GridModel::choicesOf(std::size_t row) const
{
    QStringList choices;
    for (const std::string& choice : designer_.conversionChoices(row))
        choices << toQt(choice);
    return choices;
}

QVariant GridModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const DesignEntry& row = rows_.at(static_cast<std::size_t>(index.row()));
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return toQt(cellText(row, columnOf(index)));
    case Qt::TextAlignmentRole:
        return alignmentOf(index.column());
    case choicesRole:
        return choicesOf(static_cast<std::size_t>(index.row()));
    case Qt::BackgroundRole: // the text stays as it is: one reads it to enable the row
        return row.isPolled() ? QVariant()
                              : QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Window);
    default:
        return {};
    }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical)
        return role == Qt::DisplayRole ? section + 1 : QVariant();
    switch (role) {
    case Qt::DisplayRole:
        return toQt(gridHeadings.at(static_cast<std::size_t>(section)).text);
    case Qt::TextAlignmentRole:
        return alignmentOf(section);
    default:
        return {};
    }
}

Qt::ItemFlags GridModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled; // between two rows
    const Qt::ItemFlags common = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    return common | (columnOf(index) == GridColumn::code ? Qt::ItemIsDragEnabled : Qt::ItemIsEditable);
}

bool GridModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole)
        return false;
    return enter_([this, row = static_cast<std::size_t>(index.row()), column = columnOf(index),
                   text = fromQt(value.toString())] { designer_.setCell(row, column, text); });
}

QStringList GridModel::mimeTypes() const { return {rowType}; }

QMimeData* GridModel::mimeData(const QModelIndexList& indexes) const
{
    auto* data = new QMimeData;
    data->setData(rowType, QByteArray::number(indexes.constFirst().row()));
    return data;
}

bool GridModel::dropMimeData(const QMimeData* data, Qt::DropAction /*action*/, int row, int /*column*/,
                             const QModelIndex& parent)
{
    const int from = data->data(rowType).toInt();
    const int to = row >= 0 ? row : parent.isValid() ? parent.row() : rowCount();
    enter_([this, from, to] {
        designer_.moveRow(static_cast<std::size_t>(from), static_cast<std::size_t>(to));
    });
    Q_EMIT rowMoved(from < to ? to - 1 : to);
    return false; // the row has moved: the view must not remove it where it was
}

} // namespace zint
