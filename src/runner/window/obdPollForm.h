#pragma once

#include "chart/window/eventChoice.h"
#include "platform/qtFileDialogs.h"
#include "platform/qtTimer.h"
#include "platform/systemClock.h"
#include "runner/poller.h"
#include "shared/recentFiles.h"
#include "widgets/toolForm.h"

#include <memory>
#include <string>
#include <vector>

namespace Ui {
class obdPollForm;
} // namespace Ui

namespace zint {

class Gauges;
class LiveChart;
class PollGridModel;

/// The poll runner's window.
class obdPollForm final : public toolForm {
    Q_OBJECT

public:
    explicit obdPollForm(ToolContext& context);
    ~obdPollForm() override;

private:
    void Form_Unload() override;
    bool printOn(QPrinter& printer) override;
    void mnuDesigner_Click();

    void setUpGrid();
    void setUpToolbar();
    void setUpChart();
    void setUpRecent();
    void connectActions();
    void restoreBoxes();
    void letReconnect(bool isAllowed);
    void useDecimalComma(bool isWanted);
    void save(RunFiles::Kind kind, RunFiles::Name name);
    void openLog(const std::string& path);
    void openRecent(const std::string& path);
    void recover();
    void paint();
    void widenForWords();
    QString entryText(const std::string& name) const;
    void paintRecent();

    std::unique_ptr<Ui::obdPollForm> ui;
    std::unique_ptr<SerialPort> MSComm1;
    QtTimer Timer1;
    QtTimer silence_;
    QtTimer ticker_;
    QtFileDialogs CommonDialog1;
    SystemClock clock_;
    KeptRuns kept_;
    Poller poller_;
    RecentFiles recent_;
    std::vector<QAction*> recentEntries_; ///< one for each place of the list
    std::unique_ptr<PollGridModel> grid_;
    int widestWords_ = 0; ///< pixels, so far
    EventChoice choice_{nullptr};
    LiveChart* chart_ = nullptr;
    Gauges* gauges_ = nullptr;
};

} // namespace zint
