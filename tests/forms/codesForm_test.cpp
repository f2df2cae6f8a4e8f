#include "codes/window/codesForm.h"
#include "forms/formTest.h"

#include <QClipboard>

namespace zint {
namespace {

using CodesFormTest = FormTest;

TEST_F(CodesFormTest, ReadsAndClearsByKeysAndShowsTheCodesOfCanFirst)
{
    open<codesForm>(context);
    const auto* warning = control<QLabel>("canWarning");
    EXPECT_TRUE(textOf("noDescriptions").contains(u"Set Up Code Descriptions") && !warning->isVisible());
    adapter->expectOpening();
    adapter->expect("0101\r").answer("41 01 81 07 65 04 \r\r>");
    adapter->expect("03\r").answer("43 01 04 20 \r\r>");
    adapter->expect("ATD\r");
    EXPECT_EQ(enabled("getCodes clearCodes mnuSaveReport"), "getCodes");
    press("Alt+G");
    adapter->play();
    EXPECT_EQ(enabled("getCodes clearCodes mnuSaveReport"), "getCodes clearCodes mnuSaveReport");
    EXPECT_TRUE(warning->font().bold() && warning->y() < control("codesOutput")->y());
    control("codesScroll")->actions().constFirst()->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), warning->text() + QStringLiteral("\nP0104\nP20\n\n\n"));

    adapter->expect("ATZ\r");
    adapter->expect("ATD\r");
    EXPECT_TRUE(messageOf([this] { press("Alt+C"); }).endsWith(u"press OK"));
    closeBy("backCom");
}

} // namespace
} // namespace zint
