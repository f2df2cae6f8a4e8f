#include "forms/formTest.h"
#include "platform/text.h"
#include "widgets/plainTextBox.h"
#include "widgets/windowPrinter.h"

#include <QAccessible>
#include <QPrinter>

namespace zint {
namespace {

TEST(PlainTextBoxTest, TakesAnyTextKeepsItsEndInViewAndPrints)
{
    PlainTextBox box;
    box.resize(400, 400);
    box.show();
    const std::string odd = std::string("a\0b\x1B[1m\x7F\t", 9) + "\xC2\xA0\xE2\x80\xA8\xF0\x9F\x9A\x97";
    for (const std::string& piece : {std::string("41 "), std::string("0C\r\n\r\n>"), odd + "\r\n"})
        box.append(piece);
    QTest::keyClicks(&box, u"typed"_qs);
    EXPECT_EQ(box.text(), "41 0C\r\n\r\n>" + odd + "\r\n");
    for (int i = 0; i < 200; ++i)
        box.append("41 0C\r\n");
    EXPECT_TRUE(waitUntil([&] { return box.document()->blockCount() == 204; }));
    EXPECT_TRUE(box.text().starts_with("41 0C\r\n\r\n>" + odd + "\r\n41 0C\r\n")) << "once it is shown";
    const QString read = QAccessible::queryAccessibleInterface(&box)->text(QAccessible::Value);
    EXPECT_TRUE(read.contains(u"a\u2400b") && read.endsWith(u"41 0C\n")) << fromQt(read);
    const auto isEndInView = [&] { return box.viewport()->rect().contains(box.cursorRect()); };
    EXPECT_TRUE(box.textCursor().atEnd() && isEndInView());
    box.resize(400, 250);
    EXPECT_TRUE(isEndInView());

    const TemporaryFolder folder;
    QPrinter printer;
    printer.setOutputFileName(toQt(folder.path("out.pdf")));
    ASSERT_TRUE(printText(box.text(), printer));
    EXPECT_GE(QByteArray::fromStdString(contents(folder.path("out.pdf"))).count("/Type /Page\n"), 3);
}

} // namespace
} // namespace zint
