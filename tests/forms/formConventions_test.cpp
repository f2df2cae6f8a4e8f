#include "app/failedConnForm.h"
#include "app/portsForm.h"
#include "codes/codesForm.h"
#include "designer/pollSetup2.h"
#include "dtcdb/dtcEditForm.h"
#include "forms/formTest.h"
#include "scanner/calcHdrForm.h"
#include "scanner/scanForm.h"
#include "terminal/debuggerForm.h"

#include <QAccessible>
#include <QComboBox>
#include <QMenuBar>

#include <set>

namespace zint {
namespace {

/// What holds for all windows.
struct FormConventionsTest : FormTest {
    std::vector<std::unique_ptr<QWidget>> forms;

    FormConventionsTest()
    {
        forms.push_back(makeStartForm());
        forms.push_back(std::make_unique<codesForm>(context));
        forms.push_back(std::make_unique<dtcEditForm>(context));
        forms.push_back(std::make_unique<pollSetup2>(context));
        forms.push_back(std::make_unique<debuggerForm>(context));
        forms.push_back(std::make_unique<scanForm>(context));
        forms.push_back(std::make_unique<calcHdrForm>("686AF1", settings, nullptr));
        forms.push_back(std::make_unique<failedConnForm>(context));
        forms.push_back(std::make_unique<portsForm>(ports, nullptr));
    }
};

TEST_F(FormConventionsTest, EveryWindowFitsASmallScreenAndItsControlsHaveNamesIconsAndAcceleratorsOfTheirOwn)
{
    for (const auto& window : forms) {
        SCOPED_TRACE(window->objectName().toStdString());
        window->show();
        EXPECT_LE(window->minimumSizeHint().width(), 1024);
        EXPECT_LE(window->minimumSizeHint().height(), 700);
        for (QWidget* widget : window->findChildren<QWidget*>()) {
            const auto* box = qobject_cast<QComboBox*>(widget->parentWidget()); // its parts go by its name
            const bool isControl = widget->focusPolicy() != Qt::NoFocus && box == nullptr &&
                                   !widget->objectName().isEmpty() &&
                                   !widget->objectName().startsWith(u"qt_");
            EXPECT_FALSE(isControl &&
                         QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name).isEmpty())
                << widget->objectName().toStdString();
        }
        for (const auto* button : window->findChildren<QPushButton*>())
            EXPECT_EQ(button->icon().name().isEmpty(), button->icon().pixmap(16).isNull());

        QStringList captions; // with the accelerators
        for (const auto* button : window->findChildren<QAbstractButton*>())
            captions << button->text();
        for (const auto* label : window->findChildren<QLabel*>())
            captions << (label->buddy() != nullptr ? label->text() : QString());
        if (const auto* bar = window->findChild<QMenuBar*>()) {
            for (const auto* action : bar->actions())
                captions << action->text();
        }
        std::set<QChar> keys;
        for (const QString& caption : captions) {
            const auto mark = caption.indexOf(u'&');
            EXPECT_TRUE(mark < 0 || keys.insert(caption[mark + 1].toUpper()).second)
                << "it serves twice: " << caption.toStdString();
        }
    }
}

} // namespace
} // namespace zint
