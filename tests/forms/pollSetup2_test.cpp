#include "designer/window/pollSetup2.h"
#include "forms/formTest.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QTableView>
#include <QToolButton>

namespace zint {
namespace {

const std::string noNumber = "Run-time error 13: Type mismatch";

struct PollSetup2Test : FormTest {
    PollSetup2Test()
    {
        loadDefaultDesign(design);
        open<pollSetup2>(context);
    }

    QTableView& grid() { return *control<QTableView>("obdGrid"); }
    QModelIndex at(int row, int column) { return grid().model()->index(row, column); }
    std::string cell(int row, int column) { return fromQt(at(row, column).data().toString()); }

    /// Types into the editor of a cell, which stays open.
    void enter(int row, int column, const char* text)
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // editors of before
        grid().setCurrentIndex(at(row, column));
        grid().edit(at(row, column));
        QTest::keyClicks(form->focusWidget(), QLatin1String(text));
    }
};

TEST_F(PollSetup2Test, CellsAreEditedInPlace)
{
    enter(30, 4, "0");
    press("Return");
    EXPECT_EQ(focused(), "pollTitle") << "behind the last row";
    enter(3, 1, "Load");
    press("Return");
    EXPECT_EQ(cell(3, 1) + focused(), "LoadObdUnit") << "Enter moves on to the next cell";
    EXPECT_EQ(control<QComboBox>("ObdUnit")->count(), 2);
    EXPECT_TRUE(form->isWindowModified());
    enter(3, 3, "18"); // no entry that begins so
    press("Tab");
    EXPECT_EQ(cell(3, 3) + focused(), "18obdTexter");
    QTest::keyClicks(control("obdTexter"), QStringLiteral("soon"));
    EXPECT_EQ(fromQt(messageOf([&] { press("Return"); })), noNumber);
    EXPECT_EQ(cell(3, 4), "3");
    EXPECT_EQ(grid().currentIndex().row(), 3) << "nothing to move on from";
}

TEST_F(PollSetup2Test, AClickOpensTheListInItsFullWidthAndDigitsGoOn)
{
    QTest::mouseClick(grid().viewport(), Qt::LeftButton, {}, grid().visualRect(at(3, 3)).center());
    QAbstractItemView* list = control<QComboBox>("ObdFreq")->view();
    EXPECT_TRUE(list->isVisible());
    EXPECT_GT(list->width(), list->sizeHintForColumn(0));
    EXPECT_FALSE(list->currentIndex().isValid()) << "10 is no entry";
    QTest::keyClick(list, Qt::Key_7);
    EXPECT_FALSE(list->isVisible());
    press("Return");
    EXPECT_EQ(cell(3, 3), "7");
    EXPECT_TRUE(control<QLineEdit>("obdTexter")->alignment() & Qt::AlignRight) << "the offset";
}

TEST_F(PollSetup2Test, TheGridShowsWhatIsPolledAndHowItIsSorted)
{
    EXPECT_FALSE(at(3, 0).data(Qt::BackgroundRole).isValid());
    EXPECT_TRUE(at(0, 0).data(Qt::BackgroundRole).isValid()) << "disabled";
    EXPECT_EQ(at(0, 4).data(Qt::TextAlignmentRole).value<Qt::Alignment>(), Qt::AlignRight | Qt::AlignVCenter);
    EXPECT_EQ(at(0, 0).flags() & (Qt::ItemIsEditable | Qt::ItemIsDragEnabled), Qt::ItemIsDragEnabled);
    EXPECT_EQ(grid().model()->headerData(3, Qt::Horizontal).toString(), u" Poll Frequency ");

    design = {.events = {{.code = "ATSH8110F1ATH1", .frequency = 1}}};
    open<pollSetup2>(context);
    const auto* header = grid().horizontalHeader();
    const int wide = header->sectionSize(0);
    click("mnuDefault");
    EXPECT_LT(header->sectionSize(0), wide) << "follows its codes";
    for (int i = 0; i < 2; ++i)
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, QPoint(20, header->height() / 2));
    EXPECT_EQ(cell(0, 0), "011F");
    EXPECT_EQ(std::pair(header->sortIndicatorSection(), header->sortIndicatorOrder()),
              std::pair(0, Qt::DescendingOrder));
    click("mnuDefault");
    EXPECT_EQ(header->sortIndicatorSection(), -1);
}

TEST_F(PollSetup2Test, TheKeysOfTheGridWorkInTheGridAndItsStepsInTheTitle)
{
    std::unique_ptr<QMimeData> dragged(grid().model()->mimeData({at(3, 0)}));
    grid().model()->dropMimeData(dragged.get(), Qt::MoveAction, 0, 0, {});
    EXPECT_EQ(grid().currentIndex().row(), 0) << "follows the row";
    type("pollTitle", "x"); // some time before
    grid().setFocus();
    for (const char* keys : {"Ctrl+Shift+Down", "Ctrl+Shift+Down", "Ctrl+Shift+Up", "Ctrl+D"})
        press(keys);
    EXPECT_EQ(cell(1, 0) + cell(2, 0), "01040104");
    press("Del");
    EXPECT_EQ(shown("statusBox"), "x (31 events)");
    EXPECT_EQ(grid().currentIndex().row(), 1) << "the next one";
    inNextDialog([](QDialog& dialog) {
        auto* choice = dialog.findChild<QComboBox*>();
        EXPECT_EQ(choice->count(), 27);
        QTest::keyClicks(choice->lineEdit(), QStringLiteral("01"));
        QTest::keyClick(choice->lineEdit(), Qt::Key_Return);
    });
    press("Ctrl+Ins");
    EXPECT_EQ(cell(31, 0) + focused(), "01obdTexter") << "as it was typed; the description is next";
    press("Esc");
    press("Ctrl+Z");
    EXPECT_EQ(grid().model()->rowCount(), 31)
        << "a step of the grid: nothing has been typed into the title since";
    press("Del");
    EXPECT_EQ(grid().model()->rowCount(), 31) << "a key of the title";
}

TEST_F(PollSetup2Test, AddsParametersThatAreFoundByWords)
{
    grid().setFocus();
    inNextDialog([this](QDialog& dialog) {
        auto* search = dialog.findChild<QLineEdit*>(QStringLiteral("search"));
        auto* found = dialog.findChild<QTableView*>(QStringLiteral("parameters"));
        const auto* status = dialog.findChild<QLabel*>(QStringLiteral("statusBox"));
        EXPECT_TRUE(waitUntil([&] { return search->hasFocus(); }));
        dialog.findChild<QAbstractButton*>(QStringLiteral("imperial"))->click();
        QTest::keyClicks(search, QStringLiteral("oil temp"));
        QTest::keyClick(search, Qt::Key_Return);
        EXPECT_EQ(found->model()->rowCount(), 1);
        EXPECT_EQ(found->model()->index(0, 5).data().toString(), u"yes");
        search->clear();
        QTest::keyClicks(search, QStringLiteral("rail pressure 6d"));
        QTest::keyClick(search, Qt::Key_Down);
        QTest::keyClick(found, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(found, Qt::Key_Return);
        EXPECT_EQ(status->text(), u"4 parameters added; the design has 27 polled events of 64");
        search->clear();
        found->selectAll();
        auto* add = dialog.findChild<QPushButton*>(QStringLiteral("addCom"));
        EXPECT_TRUE(messageOf([add] { add->click(); }).startsWith(u"The design would have "));
        EXPECT_EQ(grid().model()->rowCount(), 36) << "shown at once";
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    press("Ins");
    EXPECT_EQ(cell(31, 2) + cell(31, 3) + cell(35, 0), "5920>Engine oil temperature, °F15016D");
    click("mnuUndo");
    EXPECT_EQ(grid().model()->rowCount(), 32) << "one step";
    EXPECT_TRUE(form->findChild<QAction*>(QStringLiteral("mnuImperial"))->isChecked());
    click("mnuMetric");
    EXPECT_EQ(shown("statusBox"), "Metric units: 5 rows changed");
}

TEST_F(PollSetup2Test, OwnParametersAreDefinedTriedAndUsed)
{
    inNextDialog([this](QDialog& dialog) {
        const auto box = [&](const char* name) { return dialog.findChild<QLineEdit*>(QLatin1String(name)); };
        const auto text = [&](const char* name) {
            return fromQt(dialog.findChild<QLabel*>(QLatin1String(name))->text());
        };
        dialog.findChild<QPushButton*>(QStringLiteral("newCom"))->click();
        QTest::keyClicks(box("name"), QStringLiteral("Oil"));
        QTest::keyClicks(box("request"), QStringLiteral("221940"));
        QTest::keyClicks(box("formula"), QStringLiteral("-VAL(B)"));
        EXPECT_EQ(text("formulaFault"), "At character 3: there is no function VAL");
        QTest::keyClick(box("formula"), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(box("formula"), QStringLiteral("A-40"));
        QTest::keyClick(box("formula"), Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible()) << "Enter saves, and closes nothing";
        dialog.findChild<QPlainTextEdit*>(QStringLiteral("reply"))
            ->setPlainText(QStringLiteral("62 19 40 5A"));
        EXPECT_EQ(text("outcome"), "Data 5A: 50");
        adapter->expectOpening();
        adapter->expect("221940\r").answer("62 19 40 2A \r\r>");
        adapter->expect("ATD\r");
        dialog.findChild<QPushButton*>(QStringLiteral("readCom"))->click();
        adapter->play();
        EXPECT_EQ(text("outcome"), "Data 2A: 2");
        dialog.findChild<QPushButton*>(QStringLiteral("closeCom"))->click();
        EXPECT_FALSE(dialog.isVisible());
    });
    click("mnuOwnParameters");
    design = {.events = {{.code = "221940", .conversion = 10000, .frequency = 1}}};
    open<pollSetup2>(context);
    EXPECT_EQ(cell(0, 2), "10000>Oil");
}

TEST_F(PollSetup2Test, MenusReachTheDesigner)
{
    expectAfterEach("mnuDisable 0104 0 0 / mnuEnable 0104 1 0 / mnuUndo 0104 0 0 / mnuRedo 0104 1 0 / "
                    "mnuDefault 0104 10 3 / mnuPurge 0107 10 6 / mnuAutoOffset 0107 10 7",
                    [this] { return cell(3, 0) + " " + cell(3, 3) + " " + cell(3, 4); });
    std::string buttons;
    for (const char* name : {"newDesign", "saveDesign", "openDesign", "printDesign", "codeDisable",
                             "codeEnable", "addEvent", "checkCodes", "showTimeline", "calcOffset"})
        buttons += fromQt(control<QToolButton>(name)->defaultAction()->objectName()) + " ";
    EXPECT_EQ(buttons, "mnuDefault mnuSave mnuOpen mnuPrint mnuDisable mnuEnable mnuAddNew mnuVerifyObd "
                       "mnuShowTimeline mnuAutoOffset ");
}

TEST_F(PollSetup2Test, ACellThatCantBeReadKeepsTheDesignFromBeingSavedAndLost)
{
    const std::string path = values.parmSave = folder.path("car.obc");
    open<pollSetup2>(context);
    type("pollTitle", "Mine");
    for (const char* action : {"mnuSave", "mnuExit"}) {
        enter(3, 4, "soon");
        EXPECT_EQ(messageBy(action), noNumber);
        EXPECT_FALSE(fileExists(path));
        EXPECT_TRUE(form->isVisible());
    }
    enter(3, 4, " 7 ");
    messageBy("mnuAbout");
    EXPECT_EQ(cell(3, 4), "7") << "whatever comes next takes what is typed";
    click("mnuSave");
    EXPECT_TRUE(contents(path).starts_with("Mine\r\n|200\r\n0104|Calculated Engine Load|1|10|7|"));
}

TEST_F(PollSetup2Test, ChoosesAnUnsavedDesignAndGoesOnToPolling)
{
    type("pollTitle", "lost");
    enter(3, 4, "8");
    adapter->expect("ATZ\r");
    adapter->expect("ATD\r");
    click("mnuVerifyObd");
    closeBy("mnuExit"); // keeps it
    loadDefaultDesign(design);
    open<pollSetup2>(context);
    inNextDialog([](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Return); });
    click("mnuRecover");
    EXPECT_EQ(cell(3, 4), "8");
    closeBy("comDone");
    EXPECT_EQ(opened, std::vector{Tool::pollRunner});
    EXPECT_EQ(design.title, "lost");
}

TEST_F(PollSetup2Test, AsksTheVehicleWhileACellIsEdited)
{
    adapter->expectOpening();
    adapter->expect("0100\r").answer("41 00 BE 1F A8 13 \r\r>");
    adapter->expect("ATD\r");
    click("mnuVerifyObd");
    enter(3, 4, "soon");
    EXPECT_EQ(fromQt(messageOf([&] { adapter->play(); })), noNumber);
    EXPECT_EQ(shown("statusBox"), "com1 Closed - 11 of 22 events disabled. This is a hint: see Help.");
    EXPECT_EQ(cell(3, 3), "0");
    EXPECT_EQ(messageBy("labelStats"), shown("labelStats") + "\n\nSupport check: 11 of 22 events disabled");
}

TEST_F(PollSetup2Test, ShowsFileCommandsAndSpeedWithoutGrowing)
{
    const int width = form->width();
    const std::string name = std::string(140, 'n') + ".obc";
    values.parmSave = folder.path(name);
    folder.write(values.parmSave, "t\n" + std::string(400, 'A') + ";ATH1|102\n0105|x|1|1|0\n");
    open<pollSetup2>(context);
    EXPECT_EQ(form->width(), width);
    EXPECT_LE(form->minimumSizeHint().width(), width);
    EXPECT_TRUE(control("fileLab")->toolTip().contains(toQt(name)));
    EXPECT_EQ(shown("sampleDsp"), "102ms");
    click("mnuSave");
    EXPECT_NE(contents(values.parmSave).find("|102\r\n"), std::string::npos) << "not as it is shown";
    control<QCheckBox>("autoSpeed")->toggle(); // as assistive tools do
    EXPECT_EQ(shown("sampleDsp") + enabled("pollSpeed"), "Auto");
    EXPECT_FALSE(design.sampleSpeed);
}

} // namespace
} // namespace zint
