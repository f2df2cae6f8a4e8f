#include "forms/formTest.h"
#include "platform/browser.h"
#include "platform/qtSettingsStore.h"
#include "platform/qtTimer.h"

namespace zint {
namespace {

using namespace std::chrono_literals;

TEST(QtTimerTest, ATickThatWaitedAtTheGateIsDroppedWhenTheTimerWasStopped)
{
    EventGate gate;
    QtTimer timer(gate);
    int ticks = 0;
    timer.onTick = [&ticks] { ++ticks; };
    timer.setInterval(1ms);
    timer.setEnabled(true);
    gate.run([&] {
        QTest::qWait(20); // as under a message box: the tick arrives and has to wait
        timer.setEnabled(false);
    });
    timer.setEnabled(true);
    gate.run([&] {
        QTest::qWait(20);
        timer.setInterval(1h); // the late tick is one of the former interval
    });
    QTest::qWait(20);
    EXPECT_EQ(ticks, 0);
    timer.setInterval(1ms);
    EXPECT_TRUE(waitUntil([&] { return ticks > 2; })) << "it repeats";
}

TEST(QtSettingsStoreTest, KeepsTextsAsTheyAre)
{
    const std::string text = "C:\\logs\\a, b; \"c\" = 1.log \xC3\xA9";
    std::optional<QtSettingsStore> former(std::in_place);
    former->save("Startup", "parmLog", text);
    former->save("Ports", "com1", "simulated");
    EXPECT_EQ(former->flush(), "");
    former.reset();
    QtSettingsStore store;
    EXPECT_EQ(store.get("Startup", "parmLog", ""), text);
    EXPECT_EQ(store.get("Startup", "none", "missing"), "missing");
    store.remove("Ports", "com1");
    EXPECT_EQ(store.get("Ports", "com1", "gone"), "gone");
}

TEST(BrowserTest, TheEnvironmentsChoiceComesFirst)
{
    EXPECT_EQ(findBrowser(), "/bin/true");                          // as set in main
    qputenv("BROWSER", "no-such-browser:env HINT=1 true %s:sh %s"); // env alone would show no page
    EXPECT_TRUE(findBrowser().ends_with("/sh"));
    qputenv("BROWSER", "/bin/true");
}

} // namespace
} // namespace zint
