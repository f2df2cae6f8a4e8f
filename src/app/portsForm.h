#pragma once

#include "link/portDirectory.h"

#include <QDialog>

#include <memory>
#include <vector>

class QComboBox;

namespace Ui {
class portsForm;
} // namespace Ui

namespace zint {

/// Assigns serial ports, or the simulated vehicle, to com1 to com8.
class portsForm final : public QDialog {
    Q_OBJECT

public:
    /// @param directory is changed when the dialog is accepted; it outlives the dialog
    portsForm(PortDirectory& directory, QWidget* parent);
    ~portsForm() override;

    void accept() override;

private:
    void listDetected();
    QComboBox* makeChooser(int number);
    std::string initial(int number) const; ///< what the chooser shows first
    std::string chosen(const QComboBox& chooser) const;

    std::unique_ptr<Ui::portsForm> ui;
    PortDirectory& directory_;
    const std::vector<DetectedPort> detected_;
    std::vector<QComboBox*> choosers_; ///< [0] for com1
};

} // namespace zint
