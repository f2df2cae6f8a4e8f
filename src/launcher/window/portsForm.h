#pragma once

#include "launcher/portTester.h"
#include "link/portDirectory.h"

#include <QDialog>
#include <QTimer>

#include <memory>
#include <vector>

class QComboBox;

namespace Ui {
class portsForm;
} // namespace Ui

namespace zint {

/// Assigns serial ports, adapters in the network, recordings, or the simulated vehicle, to com1 to com8.
class portsForm final : public QDialog {
    Q_OBJECT

public:
    /// @param directory is changed when the dialog is accepted. @param tester may be null; both outlive the
    /// dialog
    portsForm(PortDirectory& directory, QWidget* parent, PortTester* tester = nullptr);
    ~portsForm() override;

    void accept() override;
    void done(int result) override;

private:
    /// What one of com1 to com8 stands for.
    struct Assignment {
        QComboBox* chooser;
        bool isTouched = false; ///< the user typed or chose
    };

    void lookAtPorts();
    void listDetected();
    void makeChooser(PortNumber port);
    void addRow(PortNumber port, QComboBox* chooser);
    void test(PortNumber port);
    void touch(std::size_t index);
    void showProblem();
    std::string problem() const;
    void offer(PortNumber port); ///< fills the chooser's list
    std::string present(PortNumber port) const;
    static std::string chosen(const QComboBox& chooser);

    std::unique_ptr<Ui::portsForm> ui;
    PortDirectory& directory_;
    PortTester* tester_;
    std::vector<DetectedPort> detected_;
    std::vector<Assignment> assignments_; ///< [0] for com1
    QTimer portWatch_;
};

} // namespace zint
