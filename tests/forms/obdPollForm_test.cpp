#include "forms/formTest.h"
#include "runner/window/obdPollForm.h"
#include "runner/window/pollGridModel.h"
#include "support/designOf.h"

#include <QFileDialog>
#include <QMenu>
#include <QTableView>
#include <QToolButton>

namespace zint {
namespace {

struct ObdPollFormTest : FormTest {
    ObdPollFormTest()
    {
        design = designOf({{.code = "010C", .description = "Engine RPM", .conversion = 5, .frequency = 1},
                           {.code = "0105", .description = "Coolant", .conversion = 3, .frequency = 1}});
        open<obdPollForm>(context);
    }

    QVariant cell(int row, int column, int role = Qt::DisplayRole)
    {
        return control<QTableView>("obdGrid")->model()->index(row, column).data(role);
    }
};

TEST_F(ObdPollFormTest, ShowsARunAndItsValues)
{
    EXPECT_EQ(shown("titleLab"), "Car (2 events)");
    EXPECT_EQ(cell(0, 0).toString(), u"Engine RPM");
    TemporaryFolder::write(folder.path("runs"), "no folder");
    adapter->expectOpening();
    adapter->expect("010C\r").answer("41 0C 1F 40 \r\r>");
    adapter->expect("0105\r").answer("STOPPED\r\r>");
    adapter->expect("010C\r");
    adapter->expect("ATD\r");
    click("comStart");
    EXPECT_EQ(enabled("textSampleCnt timeLimit scnUpdate comStart"), "comStart");
    adapter->play();
    press("Alt+S");
    EXPECT_TRUE(shown("statusBox")
                    .starts_with("com1 Polling Completed  - unsaved samples are not kept: The folder "));
    EXPECT_EQ(enabled("textSampleCnt timeLimit scnUpdate"), "textSampleCnt timeLimit scnUpdate");
    EXPECT_EQ(cell(0, 1).toString(), u"2000rpm");
    EXPECT_TRUE(cell(0, 4, Qt::ForegroundRole).value<QColor>().isValid()) << "a new maximum";
    EXPECT_EQ(cell(1, 1, Qt::BackgroundRole).value<QColor>(), QColor(Qt::yellow));
    EXPECT_EQ(cell(1, 0, Qt::ToolTipRole).toString(), u"Good replies: 0, bad: 1");
    PollGridModel words;
    words.refresh({{.value = "no second system", .toolTip = "Good replies: 1"}});
    EXPECT_EQ(words.index(0, 1).data(Qt::ToolTipRole).toString(), u"no second system\nGood replies: 1");
}

TEST_F(ObdPollFormTest, GoesOnPollingWhileADialogIsOpen)
{
    adapter->expectOpening();
    adapter->expect("010C\r");
    click("mnuComStart");
    adapter->play();
    for (const std::string action :
         {"mnuSaveLog", "mnuExportLogAs", "mnuDebugLog", "mnuAbout", "mnuRecover"}) {
        std::vector<std::string> sent;
        inNextDialog([&](QDialog& dialog) {
            adapter->expect("0105\r");
            adapter->expect("010C\r");
            adapter->receive("41 0C 1F 40 \r\r>");
            adapter->receive("41 05 50 \r\r>");
            sent = {adapter->history.end() - 2, adapter->history.end()};
            if (action == "mnuRecover") {
                adapter->expect("ATD\r");
                form->close();
            }
            EXPECT_TRUE(form->isVisible()) << "the dialog would go with it";
            dialog.reject();
        });
        click(action.c_str());
        EXPECT_EQ(sent, (std::vector<std::string>{"0105\r", "010C\r"})) << action;
    }
    EXPECT_FALSE(form->isVisible()) << "it closes when the dialog has gone";
}

TEST_F(ObdPollFormTest, OpensRecentLogs)
{
    const auto recent = [this] {
        std::string texts;
        for (const QAction* entry : control<QMenu>("mnuRecent")->actions())
            texts += entry->isVisible() ? fromQt(entry->text()) + "|" : "";
        return texts;
    };
    EXPECT_FALSE(control<QMenu>("mnuRecent")->menuAction()->isEnabled());
    const std::string path = folder.path("a&b.log");
    TemporaryFolder::write(path, "Bike\r\n|200\r\n010D|Speed|7|1|0\r\nEOP - end of Parms\r\ntoday\r\n 2 "
                                 "\r\n##1\r\n65,40\r\n");
    settings.save("Poll Data", "recent1", "/gone.log");
    settings.save("Poll Data", "recent2", path);
    open<obdPollForm>(context);
    EXPECT_EQ(recent(), "&1 gone.log|&2 a&&b.log||&Clear List|");
    click("mnuRecent2");
    EXPECT_EQ(shown("titleLab statLab1"), "Bike (1 events), from a&b.log|1 sample in 1:05");
    EXPECT_EQ(cell(0, 0).toString() + cell(0, 1).toString(), u"Speed24.86mph");
    EXPECT_EQ(recent(), "&1 a&&b.log|&2 gone.log||&Clear List|");
    EXPECT_EQ(messageBy("mnuRecent2"), "\"/gone.log\" is no longer there. It leaves the list.");
    EXPECT_EQ(recent(), "&1 a&&b.log||&Clear List|");
    click("mnuResetVal");
    EXPECT_EQ(shown("titleLab"), "Car (2 events)");
    click("mnuClearRecent");
    EXPECT_FALSE(control<QMenu>("mnuRecent")->menuAction()->isEnabled());
}

TEST_F(ObdPollFormTest, ToolbarKeysAndTheWayToTheDesigner)
{
    const std::pair<const char*, const char*> tips[] = {
        {"newPoll", "F1 New Poll / Reset Data"}, {"saveData", "F2 Save Data"},
        {"loadData", "F3 Load Data from File"},  {"printDesign", "F4 Print Design File"},
        {"exportData", "F5 Export Data"},        {"openDesign", "F6 Open Designer Window"}};
    for (const auto& [key, tip] : tips) {
        const auto* button = control<QToolButton>(key);
        EXPECT_EQ(button->toolTip(), QLatin1String(tip));
        EXPECT_EQ(button->defaultAction()->shortcut().toString(), button->toolTip().left(2));
    }
    type("scnUpdate", "100");
    click("mnuDecimalComma");
    inNextDialog([this](QDialog& dialog) {
        qobject_cast<QFileDialog*>(&dialog)->selectFile(toQt(folder.path("run.csv")));
        dialog.accept();
    });
    press("F5");
    EXPECT_EQ(contents(folder.path("run.csv")), "Time (s);Engine RPM (rpm);Coolant (C)\r\n");
    closeBy("mnuDesigner");
    EXPECT_EQ(opened, std::vector{Tool::pollDesigner});
    open<obdPollForm>(context);
    EXPECT_EQ(shown("scnUpdate"), "100") << "it is remembered";
    EXPECT_TRUE(form->findChild<QAction*>(u"mnuDecimalComma"_qs)->isChecked());
}

} // namespace
} // namespace zint
