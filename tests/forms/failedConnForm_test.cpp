#include "forms/formTest.h"
#include "launcher/window/failedConnForm.h"

namespace zint {
namespace {

using FailedConnFormTest = FormTest;

TEST_F(FailedConnFormTest, ShowsTheFailureAndTheHints)
{
    values.lastFailureText = "SEARCHING...\r41 01 00 \r\r>";
    (form = new failedConnForm(context))->show();
    EXPECT_EQ(textOf("failedRpt"), u"SEARCHING...\n41 01 00 \n\n>") << "the reply's lines are lines here";
    EXPECT_EQ(textOf("adviceLab"),
              u"Check port (/dev/ttyS0) and speed (9600) in the launcher; most adapters use 38400.");
    EXPECT_TRUE(messageOf([this] { click("helpCom"); }).endsWith(u"/docfails2.html"));
    const std::pair<const char*, const char*> hints[] = {{"tooOld", "OBD2 standards were in effect"},
                                                         {"badHardware", "Check all connections."},
                                                         {"ignitionOn", "The vehicle ignition must be ON"}};
    for (const auto& [button, hint] : hints) {
        click(button);
        EXPECT_TRUE(textOf("detail1").startsWith(QLatin1String(hint)));
    }
    form->setAttribute(Qt::WA_DeleteOnClose, false);
    click("applyCom");
    EXPECT_FALSE(form->isVisible());
}

} // namespace
} // namespace zint
