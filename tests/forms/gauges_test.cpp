#include "chart/window/gauges.h"
#include "forms/formTest.h"
#include "runner/window/obdPollForm.h"
#include "support/designOf.h"

#include <algorithm>
#include <span>

namespace zint {
namespace {

struct PaintCounter : QObject {
    int paints = 0;

    bool eventFilter(QObject* /*object*/, QEvent* event) override
    {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

struct GaugesTest : FormTest {
    SampleStore samples;
    EventChoice choice{nullptr};
    Gauges* gauges = nullptr;

    void show()
    {
        design = designOf({{.code = "010C", .description = "Engine RPM", .conversion = 5},
                           {.code = "0105", .conversion = 3}});
        samples.reset(design);
        choice.list(design);
        gauges = open<Gauges>(
            GaugesSurroundings{[this]() -> const Design& { return design; }, samples, choice}, nullptr);
        gauges->resize(900, 400);
        gauges->setRunning(true);
    }

    std::string told(const char* name) { return fromQt(control(name)->accessibleDescription()); }

    /// How many dark pixels the figure has, once it shows a value.
    std::ptrdiff_t figureSize(int rpm)
    {
        samples.add(0, rpm * 4, {});
        gauges->setRunning(true);
        gauges->setRunning(false);
        const QImage all = control("gauge1")->grab().toImage().convertToFormat(QImage::Format_Grayscale8);
        const QImage figure = all.copy(9, all.height() / 4, all.width() - 18, all.height() / 3);
        const std::span bits(figure.constBits(), static_cast<std::size_t>(figure.sizeInBytes()));
        return std::ranges::count_if(bits, [](uchar grey) { return grey < 128; });
    }
};

TEST_F(GaugesTest, ShowTheChosenEventsOfTheirDesign)
{
    show();
    samples.add(0, 8000, {});
    samples.addError(0);
    gauges->setRunning(false);
    EXPECT_EQ(told("gauge1"), "2000 rpm, minimum 2000, maximum 2000, bad replies: 1");
    EXPECT_EQ(control("gauge1")->toolTip(), u"Engine RPM\nBad replies: 1");
    choice.item(0)->setCheckState(Qt::Unchecked);
    choice.list(design);
    EXPECT_THROW(control("gauge1"), std::logic_error) << "of another run of this design neither";
    design = designOf({{.code = "010D", .description = "Speed", .conversion = 6}});
    samples.reset(design);
    choice.list(design);
    EXPECT_EQ(told("gauge1"), "- kph");
}

TEST_F(GaugesTest, ArePaintedWhileTheyAreSeenAndChangeAndNotForEachSample)
{
    show();
    PaintCounter changing;
    PaintCounter still;
    const auto paintsIn300ms = [&](bool isSampled) {
        changing.paints = still.paints = 0;
        QElapsedTimer timer;
        for (timer.start(); !timer.hasExpired(300); QTest::qWait(5)) {
            if (isSampled)
                samples.add(0, static_cast<std::int32_t>(timer.elapsed()) * 8, {});
        }
        return changing.paints;
    };
    control("gauge1")->installEventFilter(&changing);
    control("gauge2")->installEventFilter(&still);
    paintsIn300ms(true);
    const int paints = paintsIn300ms(true);
    EXPECT_TRUE(paints >= 1 && paints <= 5) << paints; // a machine may be slow
    EXPECT_EQ(still.paints, 0);
    EXPECT_LE(paintsIn300ms(false), 1) << "the last sample";
    gauges->hide();
    EXPECT_EQ(paintsIn300ms(true), 0);
    gauges->show();
    gauges->setRunning(false);
    QTest::qWait(50);
    EXPECT_EQ(paintsIn300ms(true), 0);
}

TEST_F(GaugesTest, KeepTheSizeOfTheWidestFigure)
{
    show();
    choice.item(1)->setCheckState(Qt::Unchecked);
    gauges->resize(450, 400); // higher than three digits need
    const auto first = figureSize(8);
    figureSize(888888);
    const auto second = figureSize(8);
    EXPECT_TRUE(second < first / 2 && second > 100) << first << ' ' << second;
}

TEST_F(GaugesTest, FillTheScreenFromTheirPageOfTheRunner)
{
    design = designOf({{.code = "010C", .description = "Engine RPM", .conversion = 5, .frequency = 1}});
    open<obdPollForm>(context);
    press("Alt+G");
    QWidget* board = control("gaugeBoard");
    adapter->expectOpening();
    adapter->expect("010C\r").answer("41 0C 1F 40 \r\r>");
    adapter->expect("010C\r");
    click("comStart");
    adapter->play();
    press("F11");
    EXPECT_TRUE(board->isFullScreen() && board->isWindow());
    press("Alt+V");
    adapter->expect("ATD\r");
    click("comStart");
    EXPECT_EQ(told("gauge1"), "2000 rpm, minimum 2000, maximum 2000") << "another page is no reason to stop";
    press("Alt+G");
    QTest::keyClick(board, Qt::Key_Escape);
    EXPECT_TRUE(board->isVisible() && !board->isWindow());
    click("gaugeScreen");
    EXPECT_TRUE(board->isWindow());
    QTest::mouseDClick(control("gauge1"), Qt::LeftButton);
    EXPECT_FALSE(board->isWindow());
    press("F11");
    board->close();
    EXPECT_TRUE(waitUntil([&] { return board->isVisible() && !board->isWindow(); }));
}

} // namespace
} // namespace zint
