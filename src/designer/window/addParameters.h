#pragma once

#include "designer/parameterList.h"
#include "shared/settingsStore.h"

#include <QAbstractTableModel>
#include <QDialog>

#include <functional>
#include <memory>

namespace Ui {
class addParameters;
} // namespace Ui

namespace zint {

/// The rows of a list of parameters for a table view.
class ParameterModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    /// Shows the list as it is now. The rows that were chosen stay so where the list has the same ones.
    void refresh(const ParameterListPanel& panel);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::vector<ParameterListPanel::Row> rows_;
};

/// The dialog in which parameters are looked for and added to the design. It stays open.
class addParameters final : public QDialog {
    Q_OBJECT

public:
    /// @param settings keep the dialog's size; all outlive the dialog
    addParameters(ParameterList& list, SettingsStore& settings, QWidget* parent);
    ~addParameters() override;

    void done(int result) override;

    std::function<void(const std::function<void()>&)> act; ///< runs what changes the design
    std::function<void()> editOwn;                         ///< shows the editor of own parameters

private:
    bool eventFilter(QObject* object, QEvent* event) override;
    void addCom_Click();
    void paint();
    void selectFirst();
    void showAddable();

    std::unique_ptr<Ui::addParameters> ui;
    ParameterList& list_;
    SettingsStore& settings_;
    ParameterModel model_;
};

} // namespace zint
