#include "doctor/window/doctorForm.h"
#include "forms/formTest.h"

#include <QClipboard>
#include <QComboBox>
#include <QListWidget>

namespace zint {
namespace {

using DoctorFormTest = FormTest;

TEST_F(DoctorFormTest, ChecksAnotherPortAndTakesItOver)
{
    settings.save("Ports", "com3", "simulated");
    open<doctorForm>(context);
    EXPECT_EQ(enabled("check takeOver copyText portChooser"), "check portChooser");
    auto* chooser = control<QComboBox>("portChooser");
    EXPECT_EQ(chooser->count(), 2) << "the one in use, and the one that stands for something";
    chooser->setCurrentIndex(1);
    Q_EMIT chooser->activated(1);
    for (const char* command : {"ATI", "ATI"})
        adapter->expect(command + std::string("\r")).answer("ATI\rELM327 v1.5\r\r>");
    for (const char* command : {"ATE0", "AT@1", "ATQQ", "ATM0", "ATIGN", "ATRD", "ATAMC", "ATL0", "ATH1",
                                "ATS0", "ATAL", "ATAT1", "ATST32"})
        adapter->expect(command + std::string("\r")).answer("OK\r\r>");
    adapter->expect("ATRV\r").answer("12.2V\r\r>");
    adapter->expect("0100\r").answer("UNABLE TO CONNECT\r\r>");
    adapter->expect("ATDPN\r").answer("A0\r\r>");
    adapter->expect("ATD\r").answer("OK\r\r>");
    adapter->expect("ATE1\r").answer("OK\r\r>");
    press("Alt+C");
    EXPECT_EQ(shown("check"), "Stop");
    EXPECT_EQ(enabled("check takeOver copyText portChooser"), "check");
    adapter->play();
    EXPECT_EQ(enabled("check takeOver copyText portChooser"), "check takeOver copyText portChooser");
    EXPECT_TRUE(
        shown("headline").starts_with("No vehicle answers, most likely because the ignition is off: 12.2 V"));
    const auto* steps = control<QListWidget>("steps");
    EXPECT_EQ(steps->item(4)->text(), u"Supply voltage - ok: 12.2 V");
    EXPECT_TRUE(steps->item(5)->text().startsWith(u"Vehicle - failed: UNABLE TO CONNECT\n"));
    click("copyText");
    EXPECT_TRUE(QGuiApplication::clipboard()->text().contains(u"Vehicle: failed, UNABLE TO CONNECT\n"));
    press("Alt+T");
    EXPECT_EQ(used, "com3 0");
    EXPECT_EQ(shown("statusBox"), "com3 is used from now on");
    closeBy("backCom");
}

} // namespace
} // namespace zint
