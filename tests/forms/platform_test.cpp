#include "forms/formTest.h"
#include "platform/browser.h"
#include "platform/qtSettingsStore.h"
#include "platform/qtTimer.h"
#include "platform/runningInstance.h"
#include "platform/wrapButton.h"

#include <QTest>

#include <atomic>
#include <thread>

namespace zint {
namespace {

TEST(QtTimerTest, ATickThatWaitedAtTheGateIsDroppedWhenTheTimerWasStopped)
{
    EventGate gate;
    QtTimer timer(gate);
    int ticks = 0;
    timer.onTick = [&ticks] { ++ticks; };
    timer.setInterval(std::chrono::milliseconds(1));

    timer.setEnabled(true);
    gate.run([&] {
        QTest::qWait(20); // as under a message box: the tick arrives and has to wait
        timer.setEnabled(false);
    });
    QTest::qWait(20);
    EXPECT_EQ(ticks, 0);

    timer.setEnabled(true);
    gate.run([&] {
        QTest::qWait(20);
        timer.setInterval(std::chrono::hours(1)); // the late tick is one of the former interval
    });
    QTest::qWait(20);
    EXPECT_EQ(ticks, 0);

    timer.setInterval(std::chrono::milliseconds(1));
    EXPECT_TRUE(waitUntil([&] { return ticks > 2; })) << "it repeats";
}

TEST(QtSettingsStoreTest, KeepsTextsAsTheyAre)
{
    const std::string text = "C:\\logs\\a, b; \"c\" = 1.log \xC3\xA9";
    {
        QtSettingsStore store;
        store.save("Startup", "parmLog", text);
        store.save("Ports", "com1", "simulated");
        EXPECT_EQ(store.flush(), "");
    }
    QtSettingsStore store;
    EXPECT_EQ(store.get("Startup", "parmLog", ""), text);
    EXPECT_EQ(store.get("Startup", "none", "missing"), "missing");
    store.remove("Ports", "com1");
    EXPECT_EQ(store.get("Ports", "com1", "gone"), "gone");
}

TEST(RunningInstanceTest, OnlyAHiddenProgramIsBroughtBack)
{
    RunningInstance hidden;
    int asked = 0;
    QObject::connect(&hidden, &RunningInstance::askedBack, &hidden, [&asked] { ++asked; });
    const auto startAgain = [] {
        std::atomic<int> result = -1;
        std::thread second([&result] { result = RunningInstance::bringBackHidden() ? 1 : 0; });
        waitUntil([&result] { return result >= 0; });
        second.join();
        return result == 1;
    };

    EXPECT_FALSE(startAgain());
    hidden.waitToBeAsked();
    RunningInstance another; // a second hidden program takes a place of its own, without waking the first
    another.waitToBeAsked();
    QTest::qWait(50);
    EXPECT_EQ(asked, 0);
    EXPECT_TRUE(startAgain());
    EXPECT_EQ(asked, 1);
    hidden.stopWaiting();
    another.stopWaiting();
    EXPECT_FALSE(startAgain());
}

TEST(WrapButtonTest, TakesTwoLinesWhereTheCaptionHasRoom)
{
    WrapButton wrapped;
    wrapped.setText(QStringLiteral("         Clear MIL          Reset data"));
    WrapButton plain;
    plain.setText(QStringLiteral("Clear MIL Reset data"));
    EXPECT_GT(wrapped.sizeHint().height(), plain.sizeHint().height());
    EXPECT_LT(wrapped.sizeHint().width(), plain.sizeHint().width());
}

TEST(BrowserTest, TheEnvironmentsChoiceComesFirst)
{
    EXPECT_EQ(findBrowser(), "/bin/true"); // as set in main
    qputenv("BROWSER", "no-such-browser:sh %s");
    EXPECT_TRUE(findBrowser().ends_with("/sh"));
    qputenv("BROWSER", "/bin/true");
}

} // namespace
} // namespace zint
