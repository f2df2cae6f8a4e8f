#include "forms/formTest.h"
#include "scanner/calcHdrForm.h"

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

    /// As a user does: into the box, over what it contains, and on to the next control.
    void type(const char* name, const QString& text)
    {
        box(name)->setFocus();
        box(name)->selectAll();
        QTest::keyClicks(box(name), text);
        QTest::keyClick(box(name), Qt::Key_Tab);
    }
};

TEST_F(CalcHdrFormTest, OpensWithTheHeaderAsItIs)
{
    open("6C30F1");
    EXPECT_TRUE(control<QCheckBox>("optBit6")->isChecked());
    EXPECT_EQ(box("hdrTarget")->text(), u"30") << "a box that is not clicked changes no target";
    EXPECT_TRUE(box("hdrTarget")->isEnabled());
    EXPECT_EQ(textOf("targetFrame"), u"Target (physical)");
    EXPECT_EQ(textOf("optBit7"), u"Inframe             Response");
    EXPECT_EQ(dialog->header(), "6C30F1");
}

TEST_F(CalcHdrFormTest, BoxesAndTextsMakeTheHeader)
{
    open("686AF1");
    EXPECT_FALSE(box("hdrTarget")->isEnabled());
    control<QCheckBox>("optBit6")->click();
    EXPECT_EQ(textOf("targetFrame"), u"Target (physical)");
    EXPECT_EQ(box("hdrOpt")->text(), u"6C");
    EXPECT_EQ(box("hdrTarget")->text(), u"10");
    EXPECT_TRUE(box("hdrTarget")->hasFocus());

    type("hdrTarget", u"5"_qs);
    EXPECT_EQ(box("hdrTarget")->text(), u"05");
    type("hdrTarget", u"123"_qs);
    EXPECT_EQ(box("hdrTarget")->text(), u"10");
    type("hdrSource", u"f9"_qs);
    type("prioVal", u"9"_qs);
    EXPECT_EQ(box("prioVal")->text(), u"7");
    EXPECT_TRUE(control<QCheckBox>("optBit3")->isChecked());
    control<QCheckBox>("optBit1")->click();
    EXPECT_EQ(box("prioVal")->text(), u"6");
    EXPECT_EQ(dialog->header(), "CC10F9");

    control<QCheckBox>("optBit6")->click();
    EXPECT_EQ(textOf("targetFrame"), u"Request (functional)");
    EXPECT_EQ(box("hdrTarget")->text(), u"6A");
    EXPECT_FALSE(box("hdrTarget")->isEnabled());
}

TEST_F(CalcHdrFormTest, ReturnAppliesWhatWasTypedAndEscapeCancels)
{
    open("6C30F1");
    box("hdrTarget")->setFocus();
    box("hdrTarget")->setText(u"0"_qs);
    QTest::keyClick(box("hdrTarget"), Qt::Key_Return);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->header(), "6C10F1") << "the box with the focus is checked too";

    open("6C30F1");
    dialog->resize(dialog->size() + QSize(60, 40));
    const QSize size = dialog->size();
    QTest::keyClick(box("hdrTarget"), Qt::Key_Escape);
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
    EXPECT_FALSE(dialog->isVisible());
    open("6C30F1");
    EXPECT_EQ(dialog->size(), size);
    click("cancelCom");
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
    EXPECT_FALSE(dialog->isVisible());
}

} // namespace
} // namespace zint
