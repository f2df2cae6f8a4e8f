#include "forms/formTest.h"
#include "runner/window/liveChart.h"
#include "support/designOf.h"
#include "support/scriptedDialogs.h"
#include "support/scriptedPrompts.h"

#include <QCategoryAxis>
#include <QChartView>
#include <QComboBox>
#include <QImage>
#include <QLineSeries>
#include <QListWidget>
#include <QValueAxis>

namespace zint {
namespace {

DesignEntry event(const char* description, std::int32_t conversion)
{
    return {.code = "0100", .description = description, .conversion = conversion};
}

struct LiveChartTest : FormTest {
    SampleStore samples;
    ScriptedDialogs dialogs;
    ScriptedPrompts prompts;
    LiveChart* chart = nullptr;

    LiveChartTest()
    {
        design = designOf({event("Engine RPM", 5), event("Fuel System", 21), event("Speed", 7),
                           event("Coolant", 3), event("Intake Air", 3), event("Road Speed", 7)});
        samples.reset(design);
        form = chart = makeLiveChart({design, samples, prompts, dialogs, values}, nullptr);
        chart->resize(800, 500);
        chart->show();
    }

    void poll(std::int32_t from, std::int32_t to)
    {
        for (std::int32_t time = from; time < to; ++time) {
            for (std::size_t event = 0; event < samples.events().size(); ++event)
                samples.add(event, 40 + time % 100, time);
        }
    }

    QChart& drawing() { return *control<QChartView>("chartView")->chart(); }

    std::string names()
    {
        std::string found;
        for (const QAbstractSeries* series : drawing().series())
            found += series->name().toStdString() + '|';
        return found;
    }

    qsizetype points() { return qobject_cast<QLineSeries*>(drawing().series().at(0))->count(); }

    /// What the time axis shows.
    std::pair<double, double> shown()
    {
        const auto* axis = qobject_cast<QValueAxis*>(drawing().axes(Qt::Horizontal).at(0));
        return {axis->min(), axis->max()};
    }

    void key(Qt::Key key) { QTest::keyClick(control<QWidget>("chartView"), key); }
};

TEST_F(LiveChartTest, DrawsTheCheckedEventsThatHaveNumbersEachInItsColour)
{
    poll(0, 100);
    chart->setRunning(true);
    auto* list = control<QListWidget>("chartEvents");
    EXPECT_EQ(list->count(), 5); // a status is no number
    EXPECT_EQ(names(), "Engine RPM (rpm)|Speed (mph)|Coolant (C, 0..100)|Intake Air (C, 0..100)|");
    EXPECT_EQ(points(), 100);
    list->item(0)->setCheckState(Qt::Unchecked);
    list->item(4)->setCheckState(Qt::Checked);
    EXPECT_EQ(names(), "Speed (mph)|Coolant (C)|Intake Air (C)|Road Speed (mph)|");
    std::set<QRgb> colours;
    for (const QAbstractSeries* series : drawing().series())
        colours.insert(qobject_cast<const QLineSeries*>(series)->pen().color().rgb());
    EXPECT_EQ(colours.size(), 4U);

    dialogs.chosen = folder.path("picture.png");
    click("chartSave");
    const QImage picture(QString::fromStdString(folder.path("picture.png")));
    for (int place = 0; place < picture.width() * picture.height(); ++place)
        colours.erase(picture.pixel(place % picture.width(), place / picture.width()));
    EXPECT_TRUE(colours.empty()) << "the picture has them all";
    dialogs.chosen = folder.path("no folder/picture.png");
    click("chartSave");
    EXPECT_NE(prompts.takeMessage().find("picture.png"), std::string::npos);
}

TEST_F(LiveChartTest, FollowsARunUnlessItIsPausedAndShowsAllOfItInTheEnd)
{
    chart->setRunning(true);
    poll(0, 400);
    EXPECT_TRUE(waitUntil([this] { return shown() == std::pair(99.0, 399.0); }));
    QTest::keyClick(control<QComboBox>("chartWindow"), Qt::Key_Up);
    EXPECT_EQ(shown(), std::pair(339.0, 399.0));
    key(Qt::Key_Space);
    poll(400, 500);
    QTest::qWait(400);
    EXPECT_EQ(shown(), std::pair(339.0, 399.0));
    samples.reset(design);
    chart->setRunning(true);
    EXPECT_EQ(points(), 0) << "a pause does not hide that the values are reset";
    poll(0, 500); // more than there were
    click("chartPause");
    chart->setRunning(false);
    EXPECT_EQ(shown(), std::pair(0.0, 499.0));
    chart->setRunning(true);
    poll(900, 901);
    chart->setRunning(false);
    EXPECT_EQ(drawing().series().size(), 8) << "no line over the time between two runs of four events";
    EXPECT_TRUE(qobject_cast<QLineSeries*>(drawing().series().back())->pointsVisible()) << "one is a dot";
}

TEST_F(LiveChartTest, ZoomsAndPansByButtonsKeysAndMouse)
{
    poll(0, 101);
    chart->setRunning(true);
    chart->setRunning(false);
    click("chartZoomIn");
    key(Qt::Key_Right);
    EXPECT_NEAR(shown().first, 22, 0.01);
    click("chartZoomOut");
    EXPECT_EQ(shown(), std::pair(0.0, 100.0));
    QWidget* view = control<QChartView>("chartView")->viewport();
    const QRectF plot = drawing().plotArea();
    const QPointF left(plot.left(), plot.center().y());
    QWheelEvent turn(left, view->mapToGlobal(left), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                     Qt::NoScrollPhase, false);
    QApplication::sendEvent(view, &turn);
    EXPECT_NEAR(shown().first, 0, 1); // what is under the pointer stays there
    EXPECT_NEAR(shown().second, 70, 1);
    const QPoint start = plot.center().toPoint();
    QTest::mousePress(view, Qt::LeftButton, {}, start);
    QTest::mouseMove(view, start - QPoint(static_cast<int>(plot.width() / 7), 0)); // a tenth of the run
    EXPECT_NEAR(shown().first, 10, 0.5);
    key(Qt::Key_Home);
    EXPECT_EQ(shown(), std::pair(0.0, 100.0));
}

} // namespace
} // namespace zint
