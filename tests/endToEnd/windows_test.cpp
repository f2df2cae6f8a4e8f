#include "designer/pollSetup2.h"
#include "endToEnd/simulator.h"
#include "forms/formTest.h"
#include "platform/qtSerialPort.h"

#include <QAction>
#include <QTableView>

namespace zint {
namespace {

/// A window whose com1 is a simulated adapter on a pseudo-terminal.
class WindowsEndToEnd : public FormTest {
protected:
    void plugIn(const char* simulatorOptions)
    {
        simulator_.emplace(simulatorOptions);
        context.makePort = [this](EventGate& gate, const ConnectionChoice&) {
            return std::make_unique<QtSerialPort>(gate,
                                                  [this](int) { return simulator_->path().toStdString(); });
        };
    }

private:
    std::optional<Simulator> simulator_;
};

TEST_F(WindowsEndToEnd, TheDesignerAsksWhatTheVehicleSupports)
{
    struct Row {
        const char* simulator;
        const char* message;
        int disabled; ///< of the 31 rows of the default design
    };
    for (const Row& row : {Row{"--no-announcement", nullptr, 18}, Row{"--pieces 1 --latency 5", nullptr, 18},
                           Row{"--ignition-off", "Please try again, is possible ignition not ON", 9},
                           Row{"--disconnect-after 2", nullptr, 9}}) {
        plugIn(row.simulator);
        loadDefaultDesign(design);
        form = new pollSetup2(context);
        form->show();
        QString message;
        if (row.message != nullptr)
            answerNextBox(QMessageBox::Ok, &message);
        control<QAction>("mnuVerifyObd")->trigger();
        const bool ends = waitUntil([this] {
            return textOf("statusBox") == u"com1 Closed" || textOf("statusBox").endsWith(u"disconnected");
        });
        EXPECT_TRUE(ends) << row.simulator;
        EXPECT_TRUE(waitUntil([&] { return message.startsWith(QLatin1String(row.message)); }))
            << row.simulator;
        const QAbstractItemModel* grid = control<QTableView>("obdGrid")->model();
        int disabled = 0;
        for (int i = 0; i < grid->rowCount(); ++i)
            disabled += grid->index(i, 3).data().toString() == u"0" ? 1 : 0;
        EXPECT_EQ(disabled, row.disabled) << row.simulator;
        delete form;
        form = nullptr;
    }
}

} // namespace
} // namespace zint
