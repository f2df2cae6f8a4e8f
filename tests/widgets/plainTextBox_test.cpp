#include "forms/formTest.h"
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
    const std::string start = "41 0C\r\n\r\n>" + odd + "\r\n";
    box.append(start.substr(0, 3));
    box.append(start.substr(3));
    QTest::keyClicks(&box, QStringLiteral("typed"));
    EXPECT_EQ(box.text(), start);
    for (int i = 0; i < 200; ++i)
        box.append("41 0C\r\n");
    EXPECT_TRUE(waitUntil([&] { return box.document()->blockCount() == 204; }));
    EXPECT_TRUE(box.text().starts_with(start + "41 0C\r\n")) << "once it is shown";
    const QString read = QAccessible::queryAccessibleInterface(&box)->text(QAccessible::Value);
    EXPECT_TRUE(read.contains(u"a\u2400b") && read.endsWith(u"41 0C\n")) << fromQt(read);
    const auto isEndInView = [&] { return box.viewport()->rect().contains(box.cursorRect()); };
    EXPECT_TRUE(box.textCursor().atEnd() && isEndInView());
    box.resize(400, 250);
    EXPECT_TRUE(isEndInView());

    const TemporaryFolder folder;
    const auto printed = [&] { return QByteArray::fromStdString(contents(folder.path("out.pdf"))); };
    QPrinter printer;
    printer.setOutputFileName(toQt(folder.path("out.pdf")));
    EXPECT_TRUE(printText(box.text(), printer));
    EXPECT_GE(printed().count("/Type /Page\n"), 3);
    EXPECT_TRUE(printImage(box, printer));
    EXPECT_TRUE(printed().contains("/Image"));
    printer.setOutputFileName(toQt(folder.path("no such folder/out.pdf")));
    EXPECT_FALSE(printImage(box, printer) || printDocument("text", printer));
}

} // namespace
} // namespace zint
