#include "forms/formTest.h"
#include "platform/browser.h"
#include "platform/qtFileDialogs.h"
#include "platform/qtPrompts.h"
#include "platform/qtSettingsStore.h"
#include "platform/qtTimer.h"
#include "platform/text.h"
#include "platform/toolForm.h"
#include "shared/fileError.h"

#include <QFileDialog>

namespace zint {
namespace {

using namespace std::chrono_literals;

/// What the next dialog shows is looked at; then it is cancelled.
void lookAtNextDialog(const std::function<void(QDialog&)>& look)
{
    QTimer::singleShot(0, qApp, [look] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        look(*dialog);
        dialog->reject();
    });
}

TEST(QtPromptsTest, DialogsShowNamesAsTheyAre)
{
    QWidget window;
    QtPrompts prompts(window);
    const std::string name = "q<b>z.mdb";
    const std::function<void()> dialogs[] = {
        [&] { prompts.message("can't be opened", "", name); },
        [&] { prompts.input(name, "", ""); },
        [&] { prompts.choose(name, "", {"one"}); },
        [&] { prompts.confirm(name, ""); },
    };
    for (const auto& open : dialogs) {
        int shown = 0;
        lookAtNextDialog([&](QDialog& dialog) {
            for (const auto* label : dialog.findChildren<QLabel*>())
                shown += label->text() == toQt(name) && label->textFormat() == Qt::PlainText ? 1 : 0;
        });
        open();
        EXPECT_EQ(shown, 1);
    }
}

TEST(QtFileDialogsTest, StartInAFolderWhereAFileCanBeSaved)
{
    QWidget window;
    QtFileDialogs dialogs(window);
    for (const char* folder : {"", "/no such folder"}) {
        QString shown;
        lookAtNextDialog([&](QDialog& dialog) {
            shown = qobject_cast<QFileDialog*>(&dialog)->directory().absolutePath();
        });
        EXPECT_EQ(dialogs.chooseToSave(textFileKinds, folder, ""), "");
        EXPECT_EQ(shown, QDir::currentPath());
    }
}

/// A tool that can't write what it keeps when it is closed.
struct FailingForm final : toolForm {
    using toolForm::toolForm;
    void Form_Unload() override { throw FileError("no room"); }
};

using ToolFormTest = FormTest;

TEST_F(ToolFormTest, AWindowWhoseUnloadingFailsTellsWhyAndMakesPlaceForTheLauncher)
{
    auto* tool = new FailingForm(context, "");
    form = tool;
    form->setAttribute(Qt::WA_DeleteOnClose, false);
    form->show();
    int unloaded = 0;
    QObject::connect(tool, &toolForm::unloaded, form, [&unloaded] { ++unloaded; });
    EXPECT_EQ(messageOf([this] { form->close(); }), u"no room");
    EXPECT_EQ(unloaded, 1);
    EXPECT_FALSE(form->isVisible());
}

TEST(QtTimerTest, ATickThatWaitedAtTheGateIsDroppedWhenTheTimerWasStopped)
{
    EventGate gate;
    QtTimer timer(gate);
    int ticks = 0;
    timer.onTick = [&ticks] { ++ticks; };
    timer.setInterval(1ms);
    timer.setEnabled(true);
    gate.run([&] {
        QTest::qWait(20); // as under a message box: the tick arrives and has to wait
        timer.setEnabled(false);
    });
    timer.setEnabled(true);
    gate.run([&] {
        QTest::qWait(20);
        timer.setInterval(1h); // the late tick is one of the former interval
    });
    QTest::qWait(20);
    EXPECT_EQ(ticks, 0);
    timer.setInterval(1ms);
    gate.run([] { QTest::qWait(20); });
    EXPECT_EQ(ticks, 1) << "those that waited come as one";
    EXPECT_TRUE(waitUntil([&] { return ticks > 2; })) << "it repeats";
}

TEST(QtSettingsStoreTest, KeepsTextsAsTheyAre)
{
    const std::string text = "C:\\logs\\a, b; \"c\" = 1.log \xC3\xA9";
    std::optional<QtSettingsStore> former(std::in_place);
    former->save("Startup", "parmLog", text);
    former->save("Ports", "com1", "simulated");
    EXPECT_EQ(former->flush(), "");
    former.reset();
    QtSettingsStore store;
    EXPECT_EQ(store.get("Startup", "parmLog", ""), text);
    EXPECT_EQ(store.get("Startup", "none", "missing"), "missing");
    store.remove("Ports", "com1");
    EXPECT_EQ(store.get("Ports", "com1", "gone"), "gone");
    EXPECT_EQ(store.damage(), "");
}

TEST(QtSettingsStoreTest, TellsOfAFileThatHoldsNoSettings)
{
    const std::string file = qEnvironmentVariable("XDG_CONFIG_HOME").toStdString() + "/Zint/Zint.conf";
    TemporaryFolder::write(file, std::string("\x80=\0\xFF\n[\x01", 7));
    EXPECT_NE(QtSettingsStore().damage().find(file + " are damaged"), std::string::npos);
    TemporaryFolder::write(file, "");
    EXPECT_EQ(QtSettingsStore().damage(), "");
}

TEST(BrowserTest, TheEnvironmentsChoiceComesFirst)
{
    EXPECT_EQ(findBrowser(), "/bin/true");                          // as set in main
    qputenv("BROWSER", "no-such-browser:env HINT=1 true %s:sh %s"); // env alone would show no page
    EXPECT_TRUE(findBrowser().ends_with("/sh"));
    qputenv("BROWSER", "/bin/true");
}

} // namespace
} // namespace zint
