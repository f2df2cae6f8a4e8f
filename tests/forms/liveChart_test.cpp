#include "chart/window/liveChart.h"
#include "chart/window/plotLibrary.h"
#include "forms/formTest.h"
#include "support/designOf.h"
#include "support/scriptedDialogs.h"
#include "support/scriptedPrompts.h"

#include <QTableView>

#include <cmath>

namespace zint {
namespace {

enum : std::int32_t { percent = 1, celsius = 3, rpm = 5, mph = 7, fuelStatus = 21 };

struct LiveChartTest : FormTest {
    SampleStore samples;
    EventChoice choice{nullptr};
    ScriptedDialogs dialogs;
    ScriptedPrompts prompts;
    LiveChart* chart = nullptr;

    void open(std::initializer_list<std::int32_t> conversions)
    {
        std::vector<DesignEntry> events;
        for (const std::int32_t conversion : conversions)
            events.push_back({.code = "010" + std::to_string(events.size()), .conversion = conversion});
        design = designOf(events);
        samples.reset(design);
        choice.list(design);
        form = chart = new LiveChart({.design = [this]() -> const Design& { return design; },
                                      .samples = samples,
                                      .choice = choice,
                                      .prompts = prompts,
                                      .dialogs = dialogs,
                                      .values = values},
                                     nullptr);
        chart->resize(900, 500);
        chart->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(chart));
        plot().setFocus();
    }

    /// A value of each event in each second.
    void poll(std::int32_t from, std::int32_t to)
    {
        for (std::int32_t time = from; time < to; ++time) {
            for (std::size_t event = 0; event < samples.events().size(); ++event)
                samples.add(event, 40 + time % 100, {time});
        }
    }

    void finish()
    {
        chart->setRunning(true);
        chart->setRunning(false);
    }

    QCustomPlot& plot() { return *control<QCustomPlot>("chartView"); }

    std::string names()
    {
        QApplication::processEvents(); // which paint
        std::string found;
        for (int row = 0; row < choice.rowCount(); ++row) {
            if (choice.item(row)->checkState() == Qt::Checked)
                found += fromQt(choice.item(row)->text()) + '|';
        }
        return found;
    }

    static std::string text(const QCPAxis& axis)
    {
        QApplication::processEvents(); // which paint
        return fromQt(
            QStringLiteral("%1-%2").arg(axis.range().lower, 0, 'f', 0).arg(axis.range().upper, 0, 'f', 0));
    }
    std::string times() { return text(*plot().xAxis); }

    /// The place of a time and of a part of the plot's height, from above.
    QPoint place(double time, double part)
    {
        const QCPAxisRect& rect = *plot().axisRect();
        return {static_cast<int>(plot().xAxis->coordToPixel(time)),
                static_cast<int>(rect.top() + part * rect.height())};
    }

    void drag(QPoint from, QPoint to, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mousePress(&plot(), Qt::LeftButton, modifiers, from);
        QTest::mouseMove(&plot(), (from + to) / 2);
        QTest::mouseMove(&plot(), to);
        QTest::mouseRelease(&plot(), Qt::LeftButton, modifiers, to);
    }

    void turnWheel(const QPointF& at)
    {
        QWheelEvent turn(at, plot().mapToGlobal(at), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                         Qt::NoScrollPhase, false);
        QApplication::sendEvent(&plot(), &turn);
    }

    /// What the list tells: the time and the values.
    std::string told()
    {
        QString all = choice.headerData(EventChoice::valueColumn, Qt::Horizontal).toString();
        for (int row = 0; row < choice.rowCount(); ++row)
            all += u' ' + choice.item(row, EventChoice::valueColumn)->text();
        return fromQt(all);
    }

    /// How many of the pixels between two times have about the first line's colour.
    int inked(double from, double to)
    {
        const QImage image = plot().grab(QRect(place(from, 0), place(to, 1))).toImage();
        const QColor ink = plot().graph(0)->pen().color();
        int count = 0;
        for (int i = 0; i < image.width() * image.height(); ++i) {
            const QColor pixel = image.pixelColor(i % image.width(), i / image.width());
            count += std::abs(pixel.red() - ink.red()) + std::abs(pixel.blue() - ink.blue()) < 60;
        }
        return count;
    }
};

TEST_F(LiveChartTest, DrawsTheChosenEventsThatHaveNumbers)
{
    open({rpm, fuelStatus, mph, celsius, celsius, mph}); // a status is no number
    poll(0, 100);
    finish();
    EXPECT_EQ(names(), "0100 (rpm)|0102 (mph)|0103 (C, 0..100)|0104 (C, 0..100)|");
    const QPen pen = plot().graph(1)->pen();
    choice.item(0)->setCheckState(Qt::Unchecked);
    choice.item(4)->setCheckState(Qt::Checked);
    EXPECT_EQ(names(), "0102 (mph)|0103 (C)|0104 (C)|0105 (mph)|");
    EXPECT_EQ(plot().graph(0)->pen(), pen) << "a line keeps its style";
    design.events.pop_back();
    design.events.front().conversion = percent;
    samples.reset(design);
    choice.list(design);
    chart->setRunning(false);
    EXPECT_EQ(names(), "0100 (%)|0102 (mph)|0103 (C)|0104 (C)|") << "of another design";
}

TEST_F(LiveChartTest, ShowsEachSampleAtItsTimeAndNoLineOverAStop)
{
    open({percent});
    constexpr std::int32_t tooLarge = 300000; // for hundredths of a percent
    samples.add(0, 51, {1, 250});
    samples.add(0, tooLarge, {2});
    samples.add(0, 102, {3});
    samples.add(0, 255, {2}); // the clock was set back
    samples.startRun();
    samples.add(0, tooLarge, {9});
    samples.add(0, 51, {10});
    samples.startRun(); // nothing came since
    samples.startRun();
    samples.add(0, 204, {20});
    finish();
    QStringList points; // a bar for a gap
    for (const auto& [time, value] : *plot().graph(0)->data())
        points += std::isnan(value) ? QStringLiteral("|") : QStringLiteral("%1:%2").arg(time).arg(value);
    EXPECT_EQ(fromQt(points.join(u' ')), "1.25:20 3:40 3:100 | 10:20 | 20:80");
    EXPECT_EQ(times(), "0-20");
    EXPECT_GT(inked(1, 3.2), 50);
    EXPECT_EQ(inked(3.5, 9.5) + inked(10.5, 19.5), 0);
    for (const double time : {10.0, 20.0})
        EXPECT_GE(inked(time - 0.2, time + 0.2), 8) << time << ": a dot for one sample by itself";
}

TEST_F(LiveChartTest, FollowsARunUnlessItIsPausedAndShowsAllOfItInTheEnd)
{
    open({rpm});
    chart->setRunning(true);
    poll(0, 400);
    EXPECT_TRUE(waitUntil([this] { return times() == "99-399"; }));
    control("chartWindow")->setFocus();
    press("Up");
    EXPECT_EQ(times(), "339-399");
    turnWheel(place(350, 0.5));
    EXPECT_EQ(times(), "357-399") << "the newest moment stays in sight";
    plot().setFocus();
    press("Space");
    poll(400, 500);
    QTest::qWait(400);
    EXPECT_EQ(times(), "357-399");
    samples.reset(design);
    chart->setRunning(true);
    EXPECT_EQ(plot().graph(0)->dataCount(), 0) << "a pause does not hide that the values are reset";
    poll(0, 500); // more than there were
    click("chartPause");
    chart->setRunning(false);
    EXPECT_EQ(times(), "0-499");
    EXPECT_EQ(plot().graph(0)->dataCount(), 500);
}

TEST_F(LiveChartTest, ZoomsAndPansByButtonsKeysAndMouse)
{
    open({celsius, mph});
    poll(0, 101);
    finish();
    expectAfterEach(
        "chartZoomIn 15-85 / chartZoomOut 0-100 / Up 15-85 / chartAll 0-100 / Right 0-100 / + 15-85 / "
        "Right 22-92 / Left 15-85 / Down 0-100 / = 15-85 / - 0-100 / Up 15-85 / Home 0-100",
        [this] { return times(); });
    const auto atAxis = [this](double part) {
        return QPoint(plot().axisRect()->left() - 10, place(0, part).y());
    };
    const std::pair<std::function<void()>, const char*> rows[] = {
        {[&] { turnWheel(place(0, 0.5)); }, "0-70 0-80"}, // what is under the pointer stays there
        {[&] { drag(place(40, 0.5), place(30, 0.5)); }, "10-80 0-90"},
        {[&] { press("Home"); }, "0-100 0-100"},
        {[&] { drag(place(20, 0.25), place(120, 0.75), Qt::ShiftModifier); },
         "20-100 25-75"}, // what is inside
        {[&] { QTest::mouseDClick(&plot(), Qt::LeftButton, {}, place(40, 0.5)); }, "0-100 0-100"},
        {[&] { drag(atAxis(0.2), atAxis(0.6)); }, "0-100 0-200"}, // what was grabbed follows the pointer
        {[&] { turnWheel(atAxis(0.995)); }, "0-100 0-140"},
        {[&] { drag(place(60, 1) + QPoint(0, 9), place(90, 1) + QPoint(0, 9)); }, "0-67 0-140"},
        {[&] { press("Home"); }, "0-100 0-100"},
    };
    for (const auto& [step, expected] : rows) {
        step();
        EXPECT_EQ(times() + " " + text(*plot().graph(0)->valueAxis()), expected);
    }
    poll(101, 2000);
    finish();
    const auto isWide = [this] { return plot().graph(1)->pen().style() != Qt::SolidLine; };
    EXPECT_TRUE(plot().xAxis->tickVectorLabels().contains(QStringLiteral("10:00")));
    EXPECT_FALSE(isWide()) << "so many points are drawn thin";
    drag(place(600, 0.25), place(700, 0.75), Qt::ShiftModifier);
    EXPECT_TRUE(waitUntil(isWide));
}

TEST_F(LiveChartTest, TellsTheValuesAtTheCursor)
{
    open({celsius, mph});
    samples.add(0, 50, {1, 500});
    samples.add(1, 0, {5});
    samples.add(0, 60, {10});
    samples.startRun();
    samples.add(0, 70, {50});
    samples.add(0, 80, {60});
    finish();
    EXPECT_EQ(told(), "Value  ");
    QTest::mouseMove(&plot(), place(3, 0.5));
    EXPECT_EQ(told().substr(0, 3) + told().substr(8), "0:0 10 ") << "mph has no sample near";
    expectAfterEach("Ctrl+Right 0:05.000 10 0 / Ctrl+Left 0:01.500 10  / Ctrl+Left 0:01.500 10  / "
                    "Ctrl+Right 0:05.000 10 0 / Ctrl+Right 0:10.000 20  / Ctrl+Right 0:50.000 30 ",
                    [this] { return told(); });
    QTest::mouseMove(&plot(), place(30, 0.5));
    EXPECT_EQ(told().substr(8), "  ") << "in a gap";
    press("Escape");
    EXPECT_EQ(told(), "Value  ");
}

TEST_F(LiveChartTest, SavesPicturesAndDocumentsInLightColours)
{
    QPalette dark = QApplication::palette();
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    open({rpm, mph});
    chart->setPalette(dark);
    poll(0, 20);
    finish();
    const QColor onScreen = plot().graph(0)->pen().color();
    dialogs.chosen = folder.path("picture.png");
    click("chartSave");
    const QImage picture(toQt(folder.path("picture.png")));
    EXPECT_GT(picture.height(), plot().height()) << "with the lines' names";
    EXPECT_EQ(picture.pixelColor(1, 1), QColor(Qt::white));
    EXPECT_EQ(plot().graph(0)->pen().color(), onScreen);
    dialogs.chosen = folder.path("chart.PDF");
    click("chartSave");
    EXPECT_EQ(contents(folder.path("chart.PDF")).substr(0, 5), "%PDF-");
    for (const char* name : {"no folder/picture.png", "picture.jpg"}) {
        dialogs.chosen = folder.path(name);
        click("chartSave");
        EXPECT_NE(prompts.takeMessage().find(name), std::string::npos);
    }
}

} // namespace
} // namespace zint
