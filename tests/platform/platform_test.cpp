#include "forms/formTest.h"
#include "platform/qtFileDialogs.h"
#include "platform/qtPrompts.h"
#include "platform/qtSettingsStore.h"
#include "platform/qtTimer.h"
#include "platform/text.h"
#include "process/browser.h"
#include "process/sessionMark.h"
#include "shared/fileError.h"
#include "widgets/toolForm.h"

#include <QFileDialog>
#include <QSignalSpy>

namespace zint {
namespace {

using namespace std::chrono_literals;

TEST(QtPromptsTest, DialogsShowNamesAsTheyAre)
{
    QWidget window;
    QtPrompts prompts(window);
    const std::initializer_list<std::function<void()>> dialogs = {
        [&] { prompts.message("", "", "q<b>z.mdb"); }, [&] { prompts.input("", "", ""); },
        [&] { prompts.choose("", "", {""}); }, [&] { prompts.confirm("", ""); }};
    for (const auto& open : dialogs) {
        inNextDialog([](QDialog& dialog) {
            for (const auto* label : dialog.findChildren<QLabel*>())
                EXPECT_EQ(label->textFormat(), Qt::PlainText);
            dialog.reject();
        });
        open();
    }
    // and a silent adapter with advice and help
    int helped = 0;
    prompts.helpOnSilence = [&helped] { ++helped; };
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, &user, [&helped] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        EXPECT_EQ(box->informativeText(), u"Check the port");
        box->button(helped == 0 ? QMessageBox::Help : QMessageBox::Ok)->click();
    });
    user.start(20);
    prompts.tellOfSilence("no answer", "Check the port");
    EXPECT_EQ(helped, 1);
}

TEST(QtFileDialogsTest, StartsWhereAFileCanBeSavedAndAddsTheExtension)
{
    QWidget window;
    inNextDialog([](QDialog& dialog) { // without a folder of its own it shows the list of drives
        EXPECT_TRUE(qobject_cast<QFileDialog*>(&dialog)->directory().isAbsolute());
        dialog.reject();
    });
    EXPECT_EQ(QtFileDialogs(window).chooseToSave(textFileKinds, "", ""), "");
    inNextDialog([](QDialog& dialog) {
        qobject_cast<QFileDialog*>(&dialog)->selectFile(u"typed"_qs);
        dialog.accept();
    });
    const TemporaryFolder folder;
    EXPECT_EQ(QtFileDialogs(window).chooseToSave(textFileKinds, folder.path(), ""), folder.path("typed.txt"));
    const FileKinds kinds{.extension = "txt", .filter = textFileKinds.filter + "|CSV files (*.csv)|*.csv"};
    for (const bool wantsAllFiles : {false, true}) {
        inNextDialog([wantsAllFiles](QDialog& dialog) {
            auto* files = qobject_cast<QFileDialog*>(&dialog);
            if (wantsAllFiles)
                Q_EMIT files->filterSelected(files->nameFilters().at(1));
            files->selectFile(u"typed"_qs);
            dialog.accept();
        });
        EXPECT_EQ(QtFileDialogs(window).chooseToSave(kinds, folder.path(), "last.CSV"),
                  folder.path(wantsAllFiles ? "typed.txt" : "typed.csv"));
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
    const QSignalSpy unloaded(tool, &toolForm::unloaded);
    EXPECT_EQ(messageOf([this] { form->close(); }), u"no room");
    EXPECT_EQ(unloaded.count(), 1);
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

TEST(QtSettingsStoreTest, KeepsTextsAsTheyAreAndTellsOfAFileThatHoldsNone)
{
    const std::string text = "C:\\logs\\a, b; \"c\" = 1.log \xC3\xA9";
    std::optional<QtSettingsStore> store(std::in_place);
    store->save("Startup", "parmLog", text);
    store->save("Ports", "com1", "simulated");
    EXPECT_EQ(store->flush(), "");
    store.emplace();
    EXPECT_EQ(store->get("Startup", "parmLog", ""), text);
    store->remove("Ports", "com1");
    EXPECT_EQ(store->get("Ports", "com1", "gone"), "gone");
    EXPECT_EQ(store->damage(), "");
    const std::string file = store->fileName();
    store.reset();
    TemporaryFolder::write(file, std::string("\x80=\0\xFF\n[\x01", 7));
    EXPECT_NE(QtSettingsStore().damage().find(file + " are damaged"), std::string::npos);
    TemporaryFolder::write(file, "");
    EXPECT_EQ(QtSettingsStore().damage(), "");
}

TEST(SessionMarkTest, FindsSessionsThatWereCutOff)
{
    const TemporaryFolder folder;
    const QString path = toQt(folder.path());
    std::optional<SessionMark> first(path);
    EXPECT_FALSE(first->cutOffSince() || SessionMark(path).cutOffSince()) << "the first one runs";
    first.reset();
    TemporaryFolder::write(folder.path("session-1.lock"),
                           "999999999\nzint-obd\n\n"); // of a process that is gone
    first.emplace(path);
    EXPECT_LT(std::chrono::system_clock::now() - first->cutOffSince().value(), 1min);
    EXPECT_FALSE(SessionMark(path).cutOffSince()) << "it is told once";
}

TEST(BrowserTest, TheEnvironmentsChoiceComesFirst)
{
    EXPECT_EQ(findBrowser(), "/bin/true");                          // as set in main
    qputenv("BROWSER", "no-such-browser:env HINT=1 true %s:sh %s"); // env alone would show no page
    EXPECT_TRUE(findBrowser().ends_with("/sh"));
    const TemporaryFolder folder; // with what always starts, though nothing shows pages
    TemporaryFolder::write(folder.path("xdg-open"), "#!/bin/sh\nexit $1\n");
    std::filesystem::permissions(folder.path("xdg-open"), std::filesystem::perms::owner_all);
    QStringList failed;
    for (const QString& code : {u"0"_qs, u"3"_qs})
        startBrowser(toQt(folder.path("xdg-open")), code, [&, code] { failed << code; });
    startBrowser(toQt(folder.path("none/xdg-open")), {}, [&] { failed << u"none"_qs; });
    EXPECT_TRUE(waitUntil([&] { return failed.size() == 2; }));
    EXPECT_TRUE(failed.contains(u"3"_qs) && failed.contains(u"none"_qs));
    qputenv("BROWSER", "/bin/true");
}

} // namespace
} // namespace zint
