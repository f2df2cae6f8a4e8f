#include "designer/pollSetup2.h"
#include "forms/formTest.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QTableView>

namespace zint {
namespace {

struct PollSetup2Test : FormTest {
    QTableView* grid = nullptr;

    PollSetup2Test()
    {
        loadDefaultDesign(design);
        form = new pollSetup2(context);
        form->show();
        grid = control<QTableView>("obdGrid");
    }

    QString cell(int row, int column) const { return grid->model()->index(row, column).data().toString(); }

    /// Opens the editor of a cell. @return the editor
    template <typename Editor>
    Editor* edit(int row, int column, const char* name)
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // editors of before
        grid->setCurrentIndex(grid->model()->index(row, column));
        grid->edit(grid->currentIndex());
        return control<Editor>(name);
    }
};

TEST_F(PollSetup2Test, CellsAreEditedInPlaceAndUndone)
{
    EXPECT_EQ(textOf("statusBox"), u"Default Settings (31 events)");
    EXPECT_EQ(control<QLineEdit>("pollTitle")->text(), u"Default Settings");
    EXPECT_EQ(cell(3, 2), u"1>Byte Percentage");
    EXPECT_FALSE(grid->model()->flags(grid->model()->index(0, 0)) & Qt::ItemIsEditable) << "the code";

    auto* texter = edit<QLineEdit>(3, 1, "obdTexter");
    texter->setText(QStringLiteral("Load"));
    QTest::keyClick(texter, Qt::Key_Return);
    EXPECT_EQ(cell(3, 1), u"Load");
    EXPECT_EQ(control<QComboBox>("ObdUnit")->count(), 1) << "Enter moves on to the next cell";

    for (const char* typed : {"25", "18"}) { // neither what stood there nor an entry that begins so
        auto* frequency = edit<QComboBox>(3, 3, "ObdFreq");
        EXPECT_EQ(frequency->itemText(6), u"  15>about 5s");
        QTest::keyClicks(frequency, QLatin1String(typed));
        QTest::keyClick(frequency, Qt::Key_Tab);
        EXPECT_EQ(cell(3, 3), QLatin1String(typed));
        EXPECT_EQ(grid->currentIndex().column(), 4);
    }

    auto* offset = edit<QLineEdit>(3, 4, "obdTexter");
    offset->setText(QStringLiteral("soon"));
    EXPECT_EQ(messageOf([&] { QTest::keyClick(offset, Qt::Key_Return); }),
              u"Run-time error 13: Type mismatch");
    EXPECT_EQ(cell(3, 4), u"3");
    EXPECT_EQ(grid->currentIndex().row(), 3) << "nothing to move on from";

    for (int i = 0; i < 3; ++i)
        trigger("mnuUndo");
    EXPECT_EQ(cell(3, 1), u"Calculated Engine Load");
    EXPECT_FALSE(control<QAction>("mnuUndo")->isEnabled());
    trigger("mnuRedo");
    EXPECT_EQ(cell(3, 1), u"Load");
}

TEST_F(PollSetup2Test, ConversionsThatNoTableHasCanBeEdited)
{
    design.entries[1].conversion = std::numeric_limits<std::int32_t>::min();
    design.polledCount() = design.eventCount();
    delete form;
    form = new pollSetup2(context);
    form->show();
    grid = control<QTableView>("obdGrid");
    auto* chooser = edit<QComboBox>(0, 2, "ObdUnit");
    EXPECT_EQ(chooser->currentText(), u"-2147483648>");
    EXPECT_EQ(chooser->count(), 26);
    QTest::keyClick(chooser, Qt::Key_Return);
    EXPECT_EQ(cell(0, 2), u"-2147483648>") << "nothing was chosen";
}

TEST_F(PollSetup2Test, RowsAreDraggedAndSorted)
{
    QAbstractItemModel* model = grid->model();
    const std::unique_ptr<QMimeData> dragged(model->mimeData({model->index(3, 0)}));
    model->dropMimeData(dragged.get(), Qt::MoveAction, 0, 0, {});
    EXPECT_EQ(cell(0, 0), u"0104");
    EXPECT_EQ(cell(1, 0), u"0101");
    EXPECT_EQ(model->rowCount(), 31);
    EXPECT_EQ(grid->currentIndex().row(), 0) << "follows the row";
    trigger("mnuMoveDown");
    trigger("mnuMoveDown");
    trigger("mnuMoveUp");
    EXPECT_EQ(cell(1, 0), u"0104");
    EXPECT_EQ(grid->currentIndex().row(), 1);
    QHeaderView* header = grid->horizontalHeader();
    const auto clickOn = [header](int column) {
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          QPoint(header->sectionViewportPosition(column) + 20, header->height() / 2));
    };
    clickOn(0);
    EXPECT_EQ(cell(0, 0), u"0101");
    clickOn(0);
    EXPECT_EQ(cell(0, 0), u"011F");
}

TEST_F(PollSetup2Test, ACellThatCantBeReadKeepsTheDesignFromBeingSaved)
{
    const std::string path = folder.path("car.obc");
    values.parmSave = path;
    values.parmSaveFile = "car.obc";
    control<QLineEdit>("pollTitle")->setText({});
    QTest::keyClicks(control<QLineEdit>("pollTitle"), QStringLiteral("Mine"));
    auto* offset = edit<QLineEdit>(3, 4, "obdTexter");
    offset->setText(QStringLiteral("soon"));
    EXPECT_EQ(messageOf([&] { trigger("mnuSave"); }), u"Run-time error 13: Type mismatch");
    EXPECT_FALSE(fileExists(path));

    offset = edit<QLineEdit>(3, 4, "obdTexter");
    offset->setText(QStringLiteral(" 7 "));
    trigger("mnuSave");
    EXPECT_EQ(textOf("statusBox"), u"car.obc saved");
    trigger("mnuDefault");
    EXPECT_EQ(cell(3, 4), u"3");

    design = {}; // another start of the program
    loadDefaultDesign(design);
    const pollSetup2 again(context);
    EXPECT_EQ(again.findChild<QLineEdit*>(QStringLiteral("pollTitle"))->text(), u"Mine");
    const QAbstractItemModel* model = again.findChild<QTableView*>(QStringLiteral("obdGrid"))->model();
    EXPECT_EQ(model->rowCount(), 22);
    EXPECT_EQ(model->index(0, 4).data().toString(), u"7");
}

TEST_F(PollSetup2Test, ChoosesAnUnsavedDesignAndGoesOnToPolling)
{
    EXPECT_FALSE(control<QPushButton>("comDone")->isEnabled()) << "nowhere to go";
    QTest::keyClicks(control<QLineEdit>("pollTitle"), QStringLiteral(" lost"));
    delete form;
    loadDefaultDesign(design);
    bool gone = false;
    context.goPolling = [&gone] { gone = true; };
    form = new pollSetup2(context);
    form->show();
    QTimer::singleShot(0, form, [] {
        auto* box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        auto* list = box->findChild<QListWidget*>();
        EXPECT_EQ(list->count(), 1);
        EXPECT_TRUE(list->item(0)->text().endsWith(u"   Default Settings lost (31 events)"));
        box->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    });
    trigger("mnuRecover");
    EXPECT_EQ(textOf("statusBox"), u"Default Settings lost (31 events) recovered");

    form->setAttribute(Qt::WA_DeleteOnClose, false);
    click("comDone");
    EXPECT_TRUE(gone);
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(design.title(), "Default Settings lost");
    EXPECT_EQ(design.eventCount(), 22);
}

TEST_F(PollSetup2Test, AsksTheVehicleAndClosesWithTheWindow)
{
    adapter->expectOpening();
    adapter->expect("0100\r").answer("41 00 BE 1F A8 13 \r\r>");
    adapter->expect("ATD\r");
    trigger("mnuVerifyObd");
    EXPECT_EQ(textOf("statusBox"), u"com1 Verify events with OBD2");
    auto* texter = edit<QLineEdit>(3, 1, "obdTexter");
    texter->setText(QStringLiteral("My load"));
    adapter->play();
    EXPECT_EQ(cell(3, 1), u"My load") << "what is typed meanwhile counts";
    EXPECT_EQ(textOf("statusBox"), u"com1 Closed");
    EXPECT_EQ(cell(3, 3), u"0");
    EXPECT_EQ(cell(4, 3), u"10");

    control<QCheckBox>("autoSpeed")->click();
    EXPECT_EQ(textOf("sampleDsp"), u"Auto");
    EXPECT_EQ(design.sampleSpeed, -1);
    adapter->expect("ATZ\r");
    adapter->expect("ATD\r");
    trigger("mnuVerifyObd");
    form->setAttribute(Qt::WA_DeleteOnClose, false);
    form->close();
    EXPECT_FALSE(adapter->isOpen());
}

} // namespace
} // namespace zint
