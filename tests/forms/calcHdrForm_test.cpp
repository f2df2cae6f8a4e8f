#include "forms/formTest.h"
#include "scanner/window/calcHdrForm.h"

#include <QCheckBox>
#include <QLineEdit>

namespace zint {
namespace {

struct CalcHdrFormTest : FormTest {
    calcHdrForm* dialog = nullptr;

    void open(std::string_view header)
    {
        delete form;
        form = dialog = new calcHdrForm(header, settings, nullptr);
        dialog->open();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog));
    }

    QLineEdit* box(const char* name) { return control<QLineEdit>(name); }

    /// As a user does: into the box, over what it contains.
    void type(const char* name, const QString& text)
    {
        box(name)->setFocus();
        box(name)->selectAll();
        QTest::keyClicks(box(name), text);
    }
};

TEST_F(CalcHdrFormTest, ControlsMakeTheHeader)
{
    open("6C30F1");
    EXPECT_EQ(textOf("targetFrame") + box("hdrTarget")->text(), u"Target (physical)30");
    EXPECT_EQ(textOf("optBit7"), u"Inframe             Response");
    QString guide;
    for (const QLabel* label : dialog->findChildren<QLabel*>())
        guide += label->text();
    EXPECT_TRUE(guide.contains(u"F1-FDOff-board test equipment"));

    open("686AF1");
    EXPECT_FALSE(box("hdrTarget")->isEnabled());
    const std::pair<const char*, const char*> rows[] = {
        {"optBit0", "786AF1"}, {"optBit4", "796AF1"}, {"optBit6", "7D10F1"}};
    for (const auto& [name, header] : rows) {
        control<QCheckBox>(name)->click();
        EXPECT_EQ(textOf("hdrOpt").toStdString() + dialog->header().substr(2), header);
    }
    EXPECT_TRUE(box("hdrTarget")->hasFocus() && box("hdrTarget")->isEnabled());
    EXPECT_EQ(box("hdrTarget")->selectedText(), u"10");
    type("hdrTarget", u"5"_qs);
    type("hdrSource", u"9"_qs);
    type("prioVal", u"9"_qs);
    EXPECT_EQ(box("hdrTarget")->text() + box("hdrSource")->text(), u"0509");
    control<QCheckBox>("optBit1")->click(); // takes the focus: the box that was left is checked first
    EXPECT_EQ(box("prioVal")->text(), u"6");
    EXPECT_EQ(dialog->header(), "DD0509");
}

TEST_F(CalcHdrFormTest, ReturnAppliesWhatWasTypedAndEscapeCancels)
{
    open("6C30F1");
    type("hdrTarget", u"0"_qs);
    QTest::keyClick(box("hdrTarget"), Qt::Key_Return);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(dialog->header(), "6C10F1") << "the box with the focus is checked too";

    open("6C30F1");
    dialog->resize(dialog->size() + QSize(60, 40));
    const QSize size = dialog->size();
    QTest::keyClick(box("hdrTarget"), Qt::Key_Escape);
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
    open("6C30F1");
    EXPECT_EQ(dialog->size(), size);
    click("cancelCom");
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
    EXPECT_FALSE(dialog->isVisible());
}

} // namespace
} // namespace zint
