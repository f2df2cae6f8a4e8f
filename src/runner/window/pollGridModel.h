#pragma once

#include "runner/pollPanel.h"

#include <QAbstractTableModel>

namespace zint {

/// The poll runner's grid for a table view: a row per event.
class PollGridModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    /// Shows these rows.
    void refresh(const std::vector<PollPanel::Row>& rows);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::vector<PollPanel::Row> rows_;
};

} // namespace zint
