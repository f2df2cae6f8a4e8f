#include "app/failedConnForm.h"
#include "app/portsForm.h"
#include "codes/codesForm.h"
#include "forms/formTest.h"
#include "forms/launcherParts.h"

#include <QAccessible>
#include <QComboBox>
#include <QMenu>
#include <QMenuBar>

#include <map>

namespace zint {
namespace {

/// Every window, and what holds for all of them.
class FormConventionsTest : public FormTest {
protected:
    std::vector<std::unique_ptr<QWidget>> allForms()
    {
        std::vector<std::unique_ptr<QWidget>> forms;
        forms.push_back(launcher.makeForm(context));
        forms.push_back(std::make_unique<codesForm>(context));
        forms.push_back(std::make_unique<failedConnForm>(context));
        forms.push_back(std::make_unique<portsForm>(launcher.ports, nullptr));
        return forms;
    }

    LauncherParts launcher{settings};
};

/// The list and the text field of a combo box go by the box's name.
bool isPartOfComboBox(const QWidget& widget)
{
    const QWidget* parent = widget.parentWidget();
    return parent != nullptr &&
           (qobject_cast<const QComboBox*>(parent) != nullptr || isPartOfComboBox(*parent));
}

QChar mnemonicOf(const QString& text)
{
    const auto at = text.indexOf(u'&');
    return at < 0 ? QChar() : text[at + 1].toUpper();
}

TEST_F(FormConventionsTest, EveryControlHasAnAccessibleName)
{
    for (const auto& window : allForms()) {
        for (const QWidget* widget : window->findChildren<QWidget*>()) {
            if (widget->focusPolicy() == Qt::NoFocus || widget->objectName().startsWith(u"qt_"))
                continue;
            QAccessibleInterface* accessible =
                QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
            ASSERT_NE(accessible, nullptr);
            EXPECT_TRUE(isPartOfComboBox(*widget) || !accessible->text(QAccessible::Name).isEmpty())
                << window->objectName().toStdString() << "." << widget->objectName().toStdString();
        }
    }
}

TEST_F(FormConventionsTest, NoAcceleratorServesTwice)
{
    for (const auto& window : allForms()) {
        std::map<QChar, std::string> owners;
        const auto claim = [&](const QString& text, const QString& name) {
            if (const QChar key = mnemonicOf(text); !key.isNull()) {
                EXPECT_TRUE(owners.emplace(key, name.toStdString()).second)
                    << window->objectName().toStdString() << ": " << name.toStdString() << " and "
                    << owners[key];
            }
        };
        for (const auto* button : window->findChildren<QAbstractButton*>())
            claim(button->text(), button->objectName());
        for (const auto* label : window->findChildren<QLabel*>()) {
            if (label->buddy() != nullptr)
                claim(label->text(), label->objectName());
        }
        if (const auto* bar = window->findChild<QMenuBar*>()) {
            for (const auto* action : bar->actions())
                claim(action->text(), action->objectName());
        }
    }
}

TEST_F(FormConventionsTest, EveryWindowFitsASmallScreen)
{
    for (const auto& window : allForms()) {
        window->show();
        EXPECT_LE(window->minimumSizeHint().width(), 1024) << window->objectName().toStdString();
        EXPECT_LE(window->minimumSizeHint().height(), 700) << window->objectName().toStdString();
    }
}

TEST_F(FormConventionsTest, TheIconsExist)
{
    for (const auto& window : allForms()) {
        for (const auto* button : window->findChildren<QPushButton*>()) {
            if (button->icon().name().isEmpty())
                continue;
            EXPECT_FALSE(button->icon().pixmap(16).isNull()) << button->objectName().toStdString();
        }
    }
}

class FailedConnFormTest : public FormTest {};

TEST_F(FailedConnFormTest, ShowsTheFailureAndTheHints)
{
    values.lastFailureText = "Timeout responding to ATZ";
    form = new failedConnForm(context);
    form->show();
    EXPECT_EQ(textOf("failedRpt"), u"Timeout responding to ATZ");
    EXPECT_TRUE(textOf("detail1").startsWith(u"We apologize for the inconvenience"));
    control<QPushButton>("tooOld")->click();
    EXPECT_TRUE(textOf("detail1").startsWith(u"OBD2 standards were in effect in the U.S. in 1996."));
    control<QPushButton>("badHardware")->click();
    EXPECT_TRUE(textOf("detail1").endsWith(u"re-attaching the computer, wait, then vehicle"));
    control<QPushButton>("ignitionOn")->click();
    EXPECT_EQ(textOf("detail1"), u"The vehicle ignition must be ON, preferably with engine running");

    form->setAttribute(Qt::WA_DeleteOnClose, false);
    control<QPushButton>("applyCom")->click();
    EXPECT_FALSE(form->isVisible());
}

TEST_F(FailedConnFormTest, IsEmptyBeforeAnyFailure)
{
    form = new failedConnForm(context);
    EXPECT_EQ(textOf("failedRpt"), u"");
}

} // namespace
} // namespace zint
