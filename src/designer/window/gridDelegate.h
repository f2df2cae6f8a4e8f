#pragma once

#include <QStyledItemDelegate>

namespace zint {

/// The three editors that are laid over a cell of the grid: obdTexter for texts, ObdUnit and ObdFreq for
/// choices.
class GridDelegate final : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;

Q_SIGNALS:
    void finished();  ///< Enter or Tab ended an edit: the next cell's turn
    void abandoned(); ///< Escape ended it

protected:
    bool eventFilter(QObject* editor, QEvent* event) override;

private:
    mutable bool accepted_ = true; ///< whether the model took what the last editor held
};

} // namespace zint
