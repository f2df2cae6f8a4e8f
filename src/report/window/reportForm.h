#pragma once

#include "dtcdb/descriptionSource.h"
#include "platform/qtFileDialogs.h"
#include "platform/qtTimer.h"
#include "platform/systemClock.h"
#include "report/keptReports.h"
#include "report/reportText.h"
#include "report/vehicleReport.h"
#include "widgets/toolForm.h"

#include <memory>
#include <string>
#include <vector>

namespace Ui {
class reportForm;
} // namespace Ui

namespace zint {

/// The window of the vehicle report: its sections on the left, what the chosen one tells on the right.
class reportForm final : public toolForm {
    Q_OBJECT

public:
    explicit reportForm(ToolContext& context);
    ~reportForm() override;

private:
    void Form_Unload() override;
    bool printOn(QPrinter& printer) override;
    void changeEvent(QEvent* event) override;

    void readReport_Click();
    void clearCodes_Click();
    void sections_Click();
    void mnuSaveReport_Click();
    void mnuCompare_Click();
    void mnuCopy_Click();
    void ftc_Click();

    void save(const std::string& path);
    bool keep(const VehicleFacts& facts);
    void paint();
    void compareWith(const std::string& path);
    void showSections();
    void showTitles(int chosen);
    void showDetails();
    ReportHead head() const;
    std::string jsonOf(const VehicleFacts& facts) const;

    std::unique_ptr<Ui::reportForm> ui;
    std::unique_ptr<SerialPort> MSComm1;
    QtTimer Timer1;
    QtTimer silence_;
    SystemClock clock_;
    QtFileDialogs CommonDialog1{*this};
    DtcDescriptionSource descriptions_;
    KeptReports kept_;
    VehicleReport report_;
    std::vector<ReportSection> shown_; ///< of the last report
    int shownReport_ = 0;              ///< its number
};

} // namespace zint
