#include "designer/window/pollSetup2.h"
#include "forms/formTest.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QInputDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QRegularExpression>
#include <QSlider>
#include <QTableView>
#include <QToolButton>

namespace zint {
namespace {

struct PollSetup2Test : FormTest {
    QTableView* grid = nullptr;

    PollSetup2Test()
    {
        loadDefaultDesign(design);
        makeForm();
    }

    void makeForm()
    {
        delete form;
        form = new pollSetup2(context);
        form->setAttribute(Qt::WA_DeleteOnClose, false);
        form->show();
        grid = control<QTableView>("obdGrid");
    }

    QModelIndex at(int row, int column) const { return grid->model()->index(row, column); }
    QString cell(int row, int column) const { return at(row, column).data().toString(); }

    /// Opens the editor of a cell. @return the editor
    template <typename Editor>
    Editor* edit(int row, int column, const char* name)
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // editors of before
        grid->setCurrentIndex(at(row, column));
        grid->edit(grid->currentIndex());
        return control<Editor>(name);
    }

    void type(int row, int column, const QString& text)
    {
        edit<QLineEdit>(row, column, "obdTexter")->setText(text);
    }

    /// Presses the keys of an action where the focus is.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        form->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(form));
        QTest::keyClick(form->focusWidget(), key, modifiers);
    }
};

TEST_F(PollSetup2Test, CellsAreEditedInPlace)
{
    QTest::keyClick(edit<QLineEdit>(30, 4, "obdTexter"), Qt::Key_Return);
    EXPECT_EQ(form->focusWidget(), control<QLineEdit>("pollTitle")) << "behind the last row";
    auto* texter = edit<QLineEdit>(3, 1, "obdTexter");
    texter->setText(QStringLiteral("Load"));
    QTest::keyClick(texter, Qt::Key_Return);
    EXPECT_EQ(cell(3, 1), u"Load");
    EXPECT_TRUE(form->isWindowModified());
    EXPECT_EQ(control<QComboBox>("ObdUnit")->count(), 1) << "Enter moves on to the next cell";

    auto* frequency = edit<QComboBox>(3, 3, "ObdFreq");
    QTest::keyClicks(frequency, QStringLiteral("18")); // no entry that begins so
    QTest::keyClick(frequency, Qt::Key_Tab);
    EXPECT_EQ(cell(3, 3), u"18");
    EXPECT_EQ(grid->currentIndex().column(), 4);

    type(3, 4, QStringLiteral("soon"));
    EXPECT_EQ(messageOf([&] { QTest::keyClick(control<QLineEdit>("obdTexter"), Qt::Key_Return); }),
              u"Run-time error 13: Type mismatch");
    EXPECT_EQ(cell(3, 4), u"3");
    EXPECT_EQ(grid->currentIndex().row(), 3) << "nothing to move on from";
}

TEST_F(PollSetup2Test, AClickOpensTheListInItsFullWidthAndDigitsGoOn)
{
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualRect(at(3, 3)).center());
    auto* frequency = control<QComboBox>("ObdFreq");
    QAbstractItemView* list = frequency->view();
    EXPECT_TRUE(list->isVisible());
    EXPECT_GT(list->width(), list->sizeHintForColumn(0));
    EXPECT_FALSE(list->currentIndex().isValid()) << "10 is no entry";
    QTest::keyClick(list, Qt::Key_7);
    EXPECT_FALSE(list->isVisible());
    QTest::keyClick(frequency, Qt::Key_Return);
    EXPECT_EQ(cell(3, 3), u"7");
    EXPECT_TRUE(control<QLineEdit>("obdTexter")->alignment() & Qt::AlignRight) << "the offset";
}

TEST_F(PollSetup2Test, TheGridShowsWhatIsPolledAndHowItIsSorted)
{
    EXPECT_EQ(at(3, 0).data(Qt::BackgroundRole), QVariant());
    EXPECT_NE(at(0, 0).data(Qt::BackgroundRole), QVariant()) << "disabled";
    EXPECT_EQ(at(0, 0).data(Qt::ForegroundRole), QVariant()) << "but legible";
    EXPECT_EQ(at(0, 4).data(Qt::TextAlignmentRole).value<Qt::Alignment>(), Qt::AlignRight | Qt::AlignVCenter);
    EXPECT_EQ(at(0, 0).flags() & (Qt::ItemIsEditable | Qt::ItemIsDragEnabled), Qt::ItemIsDragEnabled);
    EXPECT_EQ(grid->model()->headerData(3, Qt::Horizontal).toString(), u" Poll Frequency ");
    QString buttons;
    for (const auto* button :
         control<QWidget>("Toolbar1")
             ->findChildren<QToolButton*>(QRegularExpression(QStringLiteral("^[a-z]+[A-Z]"))))
        buttons += button->objectName() + u'=' + button->defaultAction()->objectName() + u' ';
    EXPECT_EQ(buttons,
              u"newDesign=mnuDefault saveDesign=mnuSave openDesign=mnuOpen printDesign=mnuPrint "
              "codeDisable=mnuDisable codeEnable=mnuEnable addEvent=mnuAddNew checkCodes=mnuVerifyObd "
              "showTimeline=mnuShowTimeline calcOffset=mnuAutoOffset ");

    design = {.events = {{.code = "ATSH8110F1ATH1", .frequency = 1}}};
    makeForm();
    QHeaderView* header = grid->horizontalHeader();
    const int wide = header->sectionSize(0);
    trigger("mnuDefault");
    EXPECT_LT(header->sectionSize(0), wide) << "follows its codes";
    for (int i = 0; i < 2; ++i)
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, QPoint(20, header->height() / 2));
    EXPECT_EQ(cell(0, 0), u"011F");
    EXPECT_EQ(header->sortIndicatorSection(), 0);
    EXPECT_EQ(header->sortIndicatorOrder(), Qt::DescendingOrder);
    trigger("mnuDefault");
    EXPECT_EQ(header->sortIndicatorSection(), -1);
}

TEST_F(PollSetup2Test, TheKeysOfTheGridWorkInTheGridAndItsStepsInTheTitle)
{
    std::unique_ptr<QMimeData> dragged(grid->model()->mimeData({at(3, 0)}));
    grid->model()->dropMimeData(dragged.get(), Qt::MoveAction, 0, 0, {});
    EXPECT_EQ(grid->currentIndex().row(), 0) << "follows the row";
    grid->setFocus();
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up})
        press(key, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(cell(1, 0), u"0104");
    press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(cell(2, 0), u"0104");
    press(Qt::Key_Delete);
    EXPECT_EQ(textOf("statusBox"), u"Default Settings (31 events)");
    EXPECT_EQ(grid->currentIndex().row(), 1) << "the next one";
    QTimer::singleShot(0, form, [] {
        auto* box = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
        EXPECT_EQ(box->comboBoxItems().size(), 27);
        QTest::keyClicks(box->findChild<QComboBox*>()->lineEdit(), QStringLiteral("01"));
        QTest::keyClick(box->findChild<QComboBox*>()->lineEdit(), Qt::Key_Return);
    });
    QTest::keyClicks(control<QLineEdit>("pollTitle"), QStringLiteral("x")); // some time before
    press(Qt::Key_Insert);
    auto* texter = control<QLineEdit>("obdTexter"); // the description is to be typed
    EXPECT_EQ(cell(31, 0), u"01") << "as it was typed";
    QTest::keyClick(texter, Qt::Key_Escape);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(grid->model()->rowCount(), 31)
        << "a step of the grid, for nothing has been typed into the title since";
    press(Qt::Key_Delete);
    EXPECT_EQ(grid->model()->rowCount(), 31) << "a key of the title";
}

TEST_F(PollSetup2Test, MenusReachTheDesigner)
{
    for (const auto& [action, row] : {std::pair{"mnuDisable", u"0104 0 0"},
                                      {"mnuEnable", u"0104 1 0"},
                                      {"mnuUndo", u"0104 0 0"},
                                      {"mnuRedo", u"0104 1 0"},
                                      {"mnuDefault", u"0104 10 3"},
                                      {"mnuPurge", u"0107 10 6"},
                                      {"mnuAutoOffset", u"0107 10 7"}}) {
        trigger(action);
        EXPECT_EQ(cell(3, 0) + u' ' + cell(3, 3) + u' ' + cell(3, 4), row) << action;
    }
}

TEST_F(PollSetup2Test, ACellThatCantBeReadKeepsTheDesignFromBeingSavedAndLost)
{
    const std::string path = values.parmSave = folder.path("car.obc");
    makeForm();
    control<QLineEdit>("pollTitle")->setText({});
    QTest::keyClicks(control<QLineEdit>("pollTitle"), QStringLiteral("Mine"));
    for (const char* action : {"mnuSave", "mnuExit"}) {
        type(3, 4, QStringLiteral("soon"));
        EXPECT_EQ(messageOf([&] { trigger(action); }), u"Run-time error 13: Type mismatch");
        EXPECT_FALSE(fileExists(path));
        EXPECT_TRUE(form->isVisible());
    }
    type(3, 4, QStringLiteral(" 7 "));
    messageOf([this] { trigger("mnuAbout"); });
    EXPECT_EQ(cell(3, 4), u"7") << "whatever comes next takes what is typed";
    trigger("mnuSave");
    EXPECT_TRUE(contents(path).starts_with("Mine\r\n|200\r\n0104|Calculated Engine Load|1|10|7|"));
    EXPECT_EQ(grid->currentIndex(), at(0, 0));
}

TEST_F(PollSetup2Test, ChoosesAnUnsavedDesignAndGoesOnToPolling)
{
    QTest::keyClicks(control<QLineEdit>("pollTitle"), QStringLiteral(" lost"));
    type(3, 4, QStringLiteral("8"));
    form->close(); // takes what is typed, and keeps it
    loadDefaultDesign(design);
    makeForm();
    QTimer::singleShot(0, form, [] {
        auto* box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        EXPECT_TRUE(box->findChild<QListWidget*>()->item(0)->text().contains(u"   Default Settings lost ("));
        box->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    });
    trigger("mnuRecover");
    click("comDone");
    EXPECT_EQ(opened, std::vector{Tool::pollRunner});
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(design.title, "Default Settings lost");
}

TEST_F(PollSetup2Test, AsksTheVehicleAndClosesWithTheWindow)
{
    adapter->expectOpening();
    adapter->expect("0100\r").answer("41 00 BE 1F A8 13 \r\r>");
    adapter->expect("ATD\r");
    trigger("mnuVerifyObd");
    type(3, 4, QStringLiteral("soon"));
    EXPECT_EQ(messageOf([&] { adapter->play(); }), u"Run-time error 13: Type mismatch");
    EXPECT_EQ(textOf("statusBox"), u"com1 Closed - 11 of 22 events disabled. This is a hint: see Help.");
    EXPECT_EQ(cell(3, 3), u"0");
    EXPECT_EQ(messageOf([&] { click("labelStats"); }),
              textOf("labelStats") + QStringLiteral("\n\nSupport check: 11 of 22 events disabled"));
    adapter->expect("ATZ\r");
    adapter->expect("ATD\r");
    trigger("mnuVerifyObd");
    form->close();
    EXPECT_FALSE(adapter->isOpen());
}

TEST_F(PollSetup2Test, ShowsFileCommandsAndSpeedWithoutGrowing)
{
    const int width = form->width();
    const std::string name = std::string(140, 'n') + ".obc";
    folder.write(folder.path(name), "t\n" + std::string(400, 'A') + ";ATH1|102\n0105|x|1|1|0\n");
    values.parmSave = folder.path(name);
    makeForm();
    EXPECT_EQ(form->width(), width);
    EXPECT_LE(form->minimumSizeHint().width(), width);
    EXPECT_TRUE(control<QLabel>("fileLab")->toolTip().contains(QString::fromStdString(name)));
    EXPECT_EQ(textOf("sampleDsp"), u"102ms");
    trigger("mnuSave");
    EXPECT_NE(contents(values.parmSave).find("|102\r\n"), std::string::npos) << "not as it is shown";
    control<QCheckBox>("autoSpeed")->toggle(); // as assistive tools do
    EXPECT_EQ(textOf("sampleDsp"), u"Auto");
    EXPECT_FALSE(design.sampleSpeed);
    EXPECT_FALSE(control<QSlider>("pollSpeed")->isEnabled());
}

} // namespace
} // namespace zint
