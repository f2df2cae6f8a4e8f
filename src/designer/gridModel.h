#pragma once

#include "designer/designer.h"

#include <QAbstractTableModel>

#include <functional>

namespace zint {

/// The designer's grid for a table view. It holds nothing: it shows the engine's panel and passes edits on.
class GridModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    using Edit = std::function<void()>;

    /// @param enter runs an edit as an event of the window; the designer outlives the model
    GridModel(Designer& designer, std::function<void(const Edit&)> enter);

    /// Shows the panel as it is now.
    void refresh();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    // Rows are dragged by their code.
    Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;

private:
    const GridRow& rowAt(const QModelIndex& index) const;

    Designer& designer_;
    std::function<void(const Edit&)> enter_;
    int shownRows_ = 0;
};

} // namespace zint
