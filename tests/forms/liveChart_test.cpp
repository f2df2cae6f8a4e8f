#include "forms/formTest.h"
#include "runner/window/liveChart.h"
#include "support/designOf.h"
#include "support/scriptedDialogs.h"
#include "support/scriptedPrompts.h"

#include <QChartView>
#include <QLineSeries>
#include <QListWidget>
#include <QValueAxis>

#include <cmath>

namespace zint {
namespace {

struct LiveChartTest : FormTest {
    SampleStore samples;
    ScriptedDialogs dialogs;
    ScriptedPrompts prompts;
    LiveChart* chart = nullptr;

    LiveChartTest()
    {
        std::vector<DesignEntry> events;
        for (const std::int32_t conversion : {5, 21, 7, 3, 3, 7})
            events.push_back({.code = "010" + std::to_string(events.size()), .conversion = conversion});
        design = designOf(events);
        samples.reset(design);
        form = chart = makeLiveChart({design, samples, prompts, dialogs, values}, nullptr);
        chart->resize(800, 500);
        chart->show();
    }

    /// A value of each event in each second.
    void poll(std::int32_t from, std::int32_t to)
    {
        for (std::int32_t time = from; time < to; ++time) {
            for (std::size_t event = 0; event < samples.events().size(); ++event)
                samples.add(event, 40 + time % 100, {time});
        }
    }

    QChart& drawing() { return *control<QChartView>("chartView")->chart(); }
    const QLineSeries& line(qsizetype number)
    {
        return *qobject_cast<QLineSeries*>(drawing().series().at(number));
    }

    std::string names()
    {
        std::string found;
        for (const QAbstractSeries* series : drawing().series())
            found += fromQt(series->name()) + '|';
        return found;
    }

    /// What the time axis shows, in whole seconds.
    std::string range()
    {
        const auto* axis = qobject_cast<QValueAxis*>(drawing().axes(Qt::Horizontal).at(0));
        return std::to_string(std::lround(axis->min())) + "-" + std::to_string(std::lround(axis->max()));
    }
};

TEST_F(LiveChartTest, DrawsTheCheckedEventsThatHaveNumbers)
{
    poll(0, 100);
    chart->setRunning(true);
    auto* list = control<QListWidget>("chartEvents");
    EXPECT_EQ(list->count(), 5); // a status is no number
    EXPECT_EQ(names(), "0100 (rpm)|0102 (mph)|0103 (C, 0..100)|0104 (C, 0..100)|");
    list->item(0)->setCheckState(Qt::Unchecked);
    list->item(4)->setCheckState(Qt::Checked);
    EXPECT_EQ(names(), "0102 (mph)|0103 (C)|0104 (C)|0105 (mph)|");
    dialogs.chosen = folder.path("picture.png");
    click("chartSave");
    EXPECT_FALSE(QImage(toQt(folder.path("picture.png"))).isNull());
    dialogs.chosen = folder.path("no folder/picture.png");
    click("chartSave");
    EXPECT_NE(prompts.takeMessage().find("picture.png"), std::string::npos);
}

TEST_F(LiveChartTest, FollowsARunUnlessItIsPausedAndShowsAllOfItInTheEnd)
{
    chart->setRunning(true);
    poll(0, 400);
    EXPECT_TRUE(waitUntil([this] { return range() == "99-399"; }));
    QTest::keyClick(control("chartWindow"), Qt::Key_Up);
    EXPECT_EQ(range(), "339-399");
    control("chartView")->setFocus();
    press("Space");
    poll(400, 500);
    QTest::qWait(400);
    EXPECT_EQ(range(), "339-399");
    samples.reset(design);
    chart->setRunning(true);
    EXPECT_EQ(line(0).count(), 0) << "a pause does not hide that the values are reset";
    poll(0, 500); // more than there were
    click("chartPause");
    chart->setRunning(false);
    EXPECT_EQ(range(), "0-499");
    chart->setRunning(true);
    poll(900, 901);
    chart->setRunning(false);
    EXPECT_EQ(drawing().series().size(), 8) << "no line over the time between two runs of four events";
    EXPECT_TRUE(line(drawing().series().size() - 1).pointsVisible()) << "one is a dot";
}

TEST_F(LiveChartTest, ZoomsAndPansByButtonsKeysAndMouse)
{
    poll(0, 101);
    chart->setRunning(true);
    chart->setRunning(false);
    const auto seen = [this] { return range(); };
    expectAfterEach("chartZoomIn 15-85 / chartZoomOut 0-100 / chartZoomIn 15-85 / chartAll 0-100", seen);
    control("chartView")->setFocus();
    expectAfterEach("Up 15-85 / Right 22-92 / Left 15-85 / Down 0-100 / Up 15-85 / Home 0-100", seen);
    QWidget* view = control<QChartView>("chartView")->viewport();
    const QRectF plot = drawing().plotArea();
    const QPointF left(plot.left(), plot.center().y());
    QWheelEvent turn(left, view->mapToGlobal(left), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                     Qt::NoScrollPhase, false);
    QApplication::sendEvent(view, &turn);
    EXPECT_EQ(range(), "0-70") << "what is under the pointer stays there";
    const QPoint start = plot.center().toPoint();
    QTest::mousePress(view, Qt::LeftButton, {}, start);
    QTest::mouseMove(view, start - QPoint(static_cast<int>(plot.width() / 7), 0)); // a tenth of the run
    EXPECT_EQ(range(), "10-80");
}

} // namespace
} // namespace zint
