#pragma once

#include "designer/designer.h"

#include <QAbstractTableModel>

#include <functional>
#include <vector>

namespace zint {

inline GridColumn columnOf(const QModelIndex& index) { return static_cast<GridColumn>(index.column()); }

/// The designer's grid for a table view. It shows the engine's panel and passes edits on.
class GridModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    using Edit = std::function<void()>;

    /// The role of the entries that the unit chooser of a row has.
    static constexpr int choicesRole = Qt::UserRole;

    /// @param enter runs an edit as an event of the window and tells whether it succeeded
    /// @param designer outlives the model
    GridModel(Designer& designer, std::function<bool(const Edit&)> enter);

    /// Shows the panel as it is now. Cells that have not changed are left alone: one may be under an editor.
    /// @return whether the grid was built anew from a design
    bool refresh();

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

Q_SIGNALS:
    void rowMoved(int row); ///< to where it was dropped

private:
    void takeRowCount(const GridRows& rows);
    QStringList choicesOf(std::size_t row) const;

    Designer& designer_;
    std::function<bool(const Edit&)> enter_;
    GridRows rows_;         ///< as shown
    unsigned rebuilds_ = 0; ///< of what is shown
};

} // namespace zint
