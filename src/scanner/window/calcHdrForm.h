#pragma once

#include "scanner/headerCalculator.h"
#include "shared/settingsStore.h"

#include <QDialog>

#include <memory>

class QCheckBox;

namespace Ui {
class calcHdrForm;
} // namespace Ui

namespace zint {

/// The header calculator: shows the fields of a request's header and lets the user change them.
class calcHdrForm final : public QDialog {
    Q_OBJECT

public:
    /// @param header the scanner's header
    /// @param settings keeps the dialog's size; it outlives the dialog
    calcHdrForm(std::string_view header, SettingsStore& settings, QWidget* parent);
    ~calcHdrForm() override;

    /// The header as it is composed now; to be taken when the dialog was accepted.
    std::string header() const { return calculator_.header(); }

    void done(int result) override;

private:
    void optBit_Click(std::size_t box);
    void prioVal_LostFocus();
    void hdrTarget_LostFocus();
    void hdrSource_LostFocus();
    void applyCom_Click();

    void showPhysicalAddresses();
    void paint();

    std::unique_ptr<Ui::calcHdrForm> ui;
    SettingsStore& settings_;
    HeaderCalculator calculator_;
    std::array<QCheckBox*, 8> optBit_{};
};

} // namespace zint
