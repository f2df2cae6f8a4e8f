#include "forms/formTest.h"
#include "runner/window/obdPollForm.h"
#include "support/designOf.h"

#include <QDialog>
#include <QLineEdit>
#include <QTableView>
#include <QTimer>
#include <QToolButton>

#include <utility>

namespace zint {
namespace {

struct ObdPollFormTest : FormTest {
    QTableView* grid = nullptr;

    ObdPollFormTest()
    {
        design = designOf({{.code = "010C", .description = "Engine RPM", .conversion = 5, .frequency = 1},
                           {.code = "0105", .description = "Coolant", .conversion = 3, .frequency = 1}});
        form = new obdPollForm(context);
        form->show();
        grid = control<QTableView>("obdGrid");
    }

    QVariant cell(int row, int column, int role = Qt::DisplayRole) const
    {
        return grid->model()->index(row, column).data(role);
    }
};

TEST_F(ObdPollFormTest, ShowsARunAndItsValues)
{
    EXPECT_EQ(textOf("titleLab"), u"Car (2 events)");
    EXPECT_EQ(cell(0, 0).toString(), u"Engine RPM");
    TemporaryFolder::write(folder.path("runs"), "no folder");
    adapter->expectOpening();
    adapter->expect("010C\r").answer("41 0C 1F 40 \r\r>");
    adapter->expect("0105\r").answer("STOPPED\r\r>");
    adapter->expect("010C\r");
    adapter->expect("ATD\r");
    click("comStart");
    for (const char* const box : {"textSampleCnt", "timeLimit", "scnUpdate"})
        EXPECT_FALSE(control<QLineEdit>(box)->isEnabled()) << box;
    adapter->play();
    EXPECT_EQ(control<QPushButton>("comStart")->shortcut().toString(), u"Alt+S");
    click("comStart");
    EXPECT_TRUE(textOf("statusBox")
                    .startsWith(u"com1 Polling Completed  - unsaved samples are not kept: The folder "));
    EXPECT_TRUE(control<QLineEdit>("timeLimit")->isEnabled());
    EXPECT_EQ(cell(0, 1).toString(), u"2000rpm");
    EXPECT_TRUE(cell(0, 4, Qt::ForegroundRole).value<QColor>().isValid()) << "a new maximum";
    EXPECT_EQ(cell(1, 1, Qt::BackgroundRole).value<QColor>(), QColor(Qt::yellow));
    EXPECT_EQ(cell(1, 0, Qt::ToolTipRole).toString(), u"Good replies: 0, bad: 1");
}

TEST_F(ObdPollFormTest, GoesOnPollingWhileADialogIsOpen)
{
    adapter->expectOpening();
    adapter->expect("010C\r");
    trigger("mnuComStart");
    adapter->play();
    form->setAttribute(Qt::WA_DeleteOnClose, false);
    for (const char* const action :
         {"mnuSaveLog", "mnuExportLogAs", "mnuDebugLog", "mnuAbout", "mnuRecover"}) {
        adapter->expect("0105\r");
        adapter->expect("010C\r");
        const std::size_t before = adapter->history.size();
        std::size_t meanwhile = 0;
        QTimer::singleShot(0, form, [&] {
            adapter->receive("41 0C 1F 40 \r\r>");
            adapter->receive("41 05 50 \r\r>");
            meanwhile = adapter->history.size();
            if (std::string_view(action) == "mnuRecover") {
                adapter->expect("ATD\r");
                form->close();
            }
            EXPECT_TRUE(form->isVisible()) << "the dialog would go with it";
            qobject_cast<QDialog*>(QApplication::activeModalWidget())->reject();
        });
        trigger(action);
        EXPECT_EQ(meanwhile, before + 2) << action;
    }
    EXPECT_FALSE(form->isVisible()) << "it closes when the dialog has gone";
}

TEST_F(ObdPollFormTest, ToolbarKeysAndTheWayToTheDesigner)
{
    const std::pair<const char*, const char*> tips[] = {
        {"newPoll", "F1 New Poll / Reset Data"}, {"saveData", "F2 Save Data"},
        {"loadData", "F3 Load Data from File"},  {"printDesign", "F4 Print Design File"},
        {"exportData", "F5 Export Data"},        {"openDesign", "F6 Open Designer Window"},
    };
    for (const auto& [key, tip] : tips) {
        const auto* button = control<QToolButton>(key);
        EXPECT_EQ(button->toolTip(), QLatin1String(tip));
        EXPECT_EQ(button->defaultAction()->shortcut().toString(), button->toolTip().left(2));
    }
    QTest::keyClicks(control<QLineEdit>("scnUpdate"), QStringLiteral("0"));
    form->setAttribute(Qt::WA_DeleteOnClose, false);
    trigger("mnuDesigner");
    EXPECT_EQ(opened, std::vector{Tool::pollDesigner});
    EXPECT_FALSE(form->isVisible());
    delete std::exchange(form, new obdPollForm(context));
    EXPECT_EQ(textOf("scnUpdate"), u"100") << "it is remembered";
}

} // namespace
} // namespace zint
