#include "codes/window/codesForm.h"
#include "forms/formTest.h"
#include "platform/text.h"
#include "widgets/windowPrinter.h"

#include <QClipboard>
#include <QPrinter>

namespace zint {
namespace {

struct CodesFormTest : FormTest {
    CodesFormTest() { (form = new codesForm(context))->show(); }
};

TEST_F(CodesFormTest, ClosingEndsTheExchange)
{
    adapter->expect("ATZ\r");
    adapter->expect("ATD\r");
    EXPECT_TRUE(textOf("noDescriptions").contains(u"Set Up Code Descriptions"));
    click("getCodes");
    form->setAttribute(Qt::WA_DeleteOnClose, false); // the test looks at it once more
    click("backCom");
    EXPECT_FALSE(form->isVisible() || adapter->isOpen());
    EXPECT_FALSE(settings.get("Windows", "codesForm").empty()) << "the size is not remembered";
}

TEST_F(CodesFormTest, ShowsTheCodesOfCanFirstAndCopiesTheList)
{
    adapter->expectOpening();
    adapter->expect("0101\r").answer("41 01 81 07 65 04 \r\r>");
    adapter->expect("03\r").answer("43 01 04 20 \r\r>");
    adapter->expect("ATD\r");
    EXPECT_TRUE(QTest::qWaitForWindowActive(form) && !control<QAction>("mnuSaveReport")->isEnabled());
    QTest::keyClick(form, Qt::Key_G, Qt::AltModifier);
    adapter->play();
    EXPECT_TRUE(control<QAction>("mnuSaveReport")->isEnabled());
    const auto* warning = control<QLabel>("canWarning");
    QCoreApplication::processEvents(); // lays them out
    EXPECT_TRUE(warning->font().bold() && warning->y() < control<QLabel>("codesOutput")->y());
    control<QWidget>("codesScroll")->actions().constFirst()->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), warning->text() + u"\nP0104\nP20\n\n\n"_qs);
}

TEST_F(CodesFormTest, PrintsItsImage)
{
    QPrinter printer;
    printer.setOutputFileName(toQt(folder.path("codes.pdf")));
    EXPECT_TRUE(printImage(*form, printer));
    EXPECT_NE(contents(folder.path("codes.pdf")).find("/Image"), std::string::npos);
    printer.setOutputFileName(toQt(folder.path("no such folder/codes.pdf")));
    EXPECT_FALSE(printImage(*form, printer) || printDocument("text", printer));
}

} // namespace
} // namespace zint
