#include "designer/gridModel.h"

#include "platform/text.h"

#include <QGuiApplication>
#include <QMimeData>
#include <QPalette>

#include <utility>

namespace zint {
namespace {

const QString rowType = QStringLiteral("application/x-zint-design-row");

GridColumn columnOf(const QModelIndex& index) { return static_cast<GridColumn>(index.column()); }

} // namespace

GridModel::GridModel(Designer& designer, std::function<void(const Edit&)> enter)
    : designer_(designer), enter_(std::move(enter))
{
}

void GridModel::refresh()
{
    const auto rows = static_cast<int>(designer_.panel().obdGrid.rows.size());
    if (rows == shownRows_) {
        if (rows > 0)
            Q_EMIT dataChanged(index(0, 0), index(rows - 1, columnCount() - 1));
        return;
    }
    beginResetModel();
    shownRows_ = rows;
    endResetModel();
}

int GridModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : shownRows_; }

int GridModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(gridHeadings.size());
}

const GridRow& GridModel::rowAt(const QModelIndex& index) const
{
    return designer_.panel().obdGrid.rows.at(static_cast<std::size_t>(index.row()));
}

QVariant GridModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const GridRow& row = rowAt(index);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return toQt(cellText(row, columnOf(index)));
    case Qt::TextAlignmentRole:
        return QVariant::fromValue<Qt::Alignment>(
            (columnOf(index) == GridColumn::offset ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    case Qt::BackgroundRole:
        return row.isEnabled() ? QVariant()
                               : QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Window);
    case Qt::ForegroundRole:
        return row.isEnabled() ? QVariant()
                               : QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Text);
    default:
        return {};
    }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return section + 1;
    return QString::fromLatin1(gridHeadings.at(static_cast<std::size_t>(section)));
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
    enter_([this, row = static_cast<std::size_t>(index.row()), column = columnOf(index),
            text = fromQt(value.toString())] { designer_.setCell(row, column, text); });
    return true;
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
    return false; // the row has moved: the view must not remove it where it was
}

} // namespace zint
