#include "codes/window/codesForm.h"
#include "designer/window/addParameters.h"
#include "designer/window/ownParametersForm.h"
#include "designer/window/pollSetup2.h"
#include "doctor/window/doctorForm.h"
#include "dtcdb/window/dtcEditForm.h"
#include "forms/formTest.h"
#include "launcher/window/failedConnForm.h"
#include "launcher/window/portsForm.h"
#include "platform/rememberedSize.h"
#include "platform/text.h"
#include "report/window/reportForm.h"
#include "runner/window/obdPollForm.h"
#include "scanner/window/calcHdrForm.h"
#include "scanner/window/scanForm.h"
#include "support/scriptedDialogs.h"
#include "support/scriptedPrompts.h"
#include "terminal/window/debuggerForm.h"
#include "widgets/display.h"
#include "widgets/icons.h"

#include <QComboBox>
#include <QMenu>

#include <set>

namespace zint {
namespace {

QString nameOf(QWidget& widget)
{
    return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name);
}

/// What holds for all windows.
struct FormConventionsTest : FormTest {
    EventGate gate;
    ScriptedAdapter port;
    ManualTimer timer;
    ScriptedPrompts prompts;
    ScriptedDialogs dialogs;
    KeptDesigns kept{folder.path(), [](auto) { return ""; }};
    Designer designer{
        {port, {}, timer}, design, prompts, dialogs, values, kept, ParametersFile(folder.path())};
    ParameterList list{designer, values};
    std::vector<std::unique_ptr<QWidget>> windows;

    FormConventionsTest()
    {
        useOwnIcons();
        loadDefaultDesign(design);
        openAll();
    }

    void openAll()
    {
        windows.clear();
        for (QWidget* window : std::initializer_list<QWidget*>{
                 new startForm(context), new codesForm(context), new dtcEditForm(context),
                 new pollSetup2(context), new obdPollForm(context), new debuggerForm(context),
                 new scanForm(context), new reportForm(context), new doctorForm(context),
                 new failedConnForm(context), new calcHdrForm("686AF1", settings, nullptr),
                 new addParameters(list, settings, nullptr),
                 new ownParametersForm(context, gate, prompts, designer, nullptr),
                 new portsForm(ports, nullptr)})
            windows.emplace_back(window)->show();
    }
};

TEST_F(FormConventionsTest, EveryWindowKeepsItsSizeAndFitsASmallScreen)
{
    const QSize screen = QGuiApplication::primaryScreen()->availableSize();
    const auto fits = [&](const QSize& size) { return size.boundedTo(screen) == size; };
    for (const QSize more : {QSize(12, 0), QSize(3000, 2000)}) {
        std::vector<QSize> sizes;
        for (const auto& window : windows) {
            window->setAttribute(Qt::WA_DeleteOnClose, false);
            window->resize(window->size() + more);
            sizes.push_back(window->size());
            window->close();
        }
        openAll();
        for (std::size_t i = 0; i < sizes.size(); ++i) {
            const std::string name = windows[i]->objectName().toStdString();
            EXPECT_TRUE(fits(windows[i]->frameSize())) << name;
            EXPECT_TRUE(windows[i]->size() == sizes[i] || !fits(sizes[i]) || name == "portsForm") << name;
        }
    }
    QMainWindow large;
    large.setCentralWidget(new QWidget);
    large.centralWidget()->setMinimumSize(3000, 2000);
    restoreSize(large, settings);
    large.show();
    EXPECT_TRUE(fits(large.frameSize()));
}

TEST_F(FormConventionsTest, ControlsHaveNamesIconsAndAcceleratorsOfTheirOwn)
{
    for (const auto& window : windows) {
        SCOPED_TRACE(window->objectName().toStdString());
        for (QWidget* widget : window->findChildren<QWidget*>()) {
            const auto* box = qobject_cast<QComboBox*>(widget->parentWidget()); // its parts go by its name
            const bool isControl = widget->focusPolicy() != Qt::NoFocus && box == nullptr &&
                                   !widget->inherits("QLabel") && !widget->objectName().isEmpty() &&
                                   !widget->objectName().startsWith(u"qt_");
            EXPECT_FALSE(isControl && nameOf(*widget).isEmpty()) << widget->objectName().toStdString();
        }
        for (auto* frame : window->findChildren<QGroupBox*>())
            EXPECT_EQ(nameOf(*frame), frame->title().remove(u'&'));
        for (const auto* button : window->findChildren<QPushButton*>())
            EXPECT_EQ(button->icon().name().isEmpty(), button->icon().pixmap(16).isNull());

        QStringList captions; // with the accelerators
        for (const auto* button : window->findChildren<QAbstractButton*>())
            captions << button->text();
        for (const auto* label : window->findChildren<QLabel*>())
            captions << (label->buddy() != nullptr ? label->text() : QString());
        for (const auto* menu : window->findChildren<QMenu*>())
            captions << menu->title();
        std::set<QChar> keys;
        for (const QString& caption : captions) {
            const auto mark = caption.indexOf(u'&');
            EXPECT_TRUE(mark < 0 || keys.insert(caption[mark + 1].toUpper()).second)
                << "it serves twice: " << caption.toStdString();
        }
    }
}

TEST_F(FormConventionsTest, AScreenReaderReadsWhatLabelsShow)
{
    for (const auto& window : windows) {
        for (auto* label : window->findChildren<QLabel*>()) {
            display(*label, "a<b>c");
            EXPECT_TRUE(nameOf(*label).contains(u"a<b>c")) << label->objectName().toStdString();
        }
    }
}

TEST_F(FormConventionsTest, HelpAndLogosOpenTheirPages)
{
    values.browserPath = folder.path("browser");
    TemporaryFolder::write(values.browserPath, "#!/bin/sh\ntouch \"${0%/*}/${1##*/}\"\n");
    std::filesystem::permissions(values.browserPath, std::filesystem::perms::owner_all);
    const auto expectPage = [this](const std::string& name) {
        const std::string page = folder.path(name + ".html");
        EXPECT_TRUE(waitUntil([&page] { return std::filesystem::remove(page); })) << name;
    };
    for (auto window = windows.begin();
         const char* page : {"docstart2", "docchken2", "docdtce2", "docpldsn2", "docpldat2", "docexplr2",
                             "docscan2", "docreprt2", "docdoctr2"}) {
        (*window++)->findChild<QAction*>(QStringLiteral("mnuHelp"))->trigger();
        expectPage(page);
    }
    for (const char* logo : {"logo", "logo2"}) {
        windows.front()->findChild<QPushButton*>(QLatin1String(logo))->click();
        expectPage("doctop");
    }
}

} // namespace
} // namespace zint
