#include "catalogue/designFile.h"
#include "designer/window/pollSetup2.h"
#include "endToEnd/fixedRun.h"
#include "endToEnd/simulator.h"
#include "forms/formTest.h"
#include "runner/dataLogReader.h"
#include "runner/window/obdPollForm.h"
#include "scanner/window/scanForm.h"
#include "widgets/plainTextBox.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QProgressBar>
#include <QTableView>
#include <QTimer>

namespace zint {
namespace {

/// A window whose com1 is a simulated adapter on a pseudo-terminal.
class WindowsEndToEnd : public FormTest {
protected:
    void plugIn(const char* simulatorOptions)
    {
        simulator_.emplace(simulatorOptions);
        device = simulator_->path().toStdString();
    }

    /// Types a name, as a user does who is asked for a file in the test's folder. @return what was written
    std::string savedBy(const char* action, const char* name, const char* extension)
    {
        values.parmInitDir = folder.path();
        QTimer watch;
        QObject::connect(&watch, &QTimer::timeout, form, [&watch, name] {
            auto* edit = qobject_cast<QLineEdit*>(QApplication::focusWidget());
            if (edit == nullptr || edit->objectName() != u"fileNameEdit")
                return;
            watch.stop();
            edit->selectAll();
            QTest::keyClicks(edit, QLatin1String(name));
            QTest::keyClick(edit, Qt::Key_Return);
        });
        watch.start(5);
        trigger(action);
        return contents(folder.path(name) + extension);
    }

    bool showsStatus(const char* text)
    {
        return waitUntil([&] { return textOf("statusBox") == QLatin1String(text); });
    }

    QString cell(int row, int column)
    {
        return control<QTableView>("obdGrid")->model()->index(row, column).data().toString();
    }

private:
    std::optional<Simulator> simulator_;
};

TEST_F(WindowsEndToEnd, TheDesignerAsksWhatTheVehicleSupports)
{
    plugIn("--protocol can");
    loadDefaultDesign(design);
    form = new pollSetup2(context);
    form->show();
    trigger("mnuVerifyObd");
    EXPECT_TRUE(showsStatus("com1 Closed - 9 of 22 events disabled. This is a hint: see Help."))
        << textOf("statusBox").toStdString();
    int disabled = 0;
    for (int i = 0; i < control<QTableView>("obdGrid")->model()->rowCount(); ++i)
        disabled += cell(i, 3) == u"0" ? 1 : 0;
    EXPECT_EQ(disabled, 18) << "of the 31 rows of the default design";
}

TEST_F(WindowsEndToEnd, TheRunnerPollsAndWritesWhatTheVehicleSent)
{
    const char* const ended = "Completed Polling, all samples filled";
    const char* const pulled = "com1 - adapter disconnected";
    struct Row {
        const char* simulator;
        const char* loops;
        const char* end;
        const char* files;
    };
    for (const Row& row : {Row{"--no-announcement --pieces 1 --latency 20", "4", ended, "pieces"},
                           // with the reply that ends the fourth loop of the six
                           Row{"--no-announcement --latency 1 --disconnect-after 10", "6", pulled, "cut"}}) {
        SCOPED_TRACE(row.simulator);
        plugIn(row.simulator);
        std::istringstream stream(fixedDesign);
        design = readDesign(stream);
        dropUnpolled(design); // as the designer hands it over
        delete std::exchange(form, new obdPollForm(context));
        form->show();
        control<QLineEdit>("textSampleCnt")->clear();
        QTest::keyClicks(control<QLineEdit>("textSampleCnt"), QLatin1String(row.loops));
        trigger("mnuResetVal");
        const auto started = std::chrono::system_clock::now();
        click("comStart");
        EXPECT_TRUE(showsStatus(row.end)) << textOf("statusBox").toStdString();
        EXPECT_EQ(cell(0, 1) + u' ' + cell(0, 2), u"99kPa 4");

        const std::string log = savedBy("mnuSaveLog", row.files, ".log");
        EXPECT_EQ(textOf("statusBox").toStdString(), row.files + std::string(".log log saved"));
        expectFourLoops(log, savedBy("mnuExportLog", row.files, ".txt"), started);
    }

    // again, to go on with the run, stopped in the middle of a request
    plugIn("--no-announcement --latency 150 --late-defaults 200 --keep-unread");
    trigger("mnuComStart");
    EXPECT_TRUE(showsStatus("com1 Polling")) << textOf("statusBox").toStdString();
    QTest::qWait(70);
    trigger("mnuComStart");
    trigger("mnuComStart");
    EXPECT_TRUE(showsStatus(ended)) << textOf("statusBox").toStdString();
    EXPECT_EQ(control<QProgressBar>("ProgressBar1")->text(), u"100%");
    trigger("mnuSaveLog"); // to the same file
    std::istringstream stream(contents(folder.path("cut.log")));
    const SampleStore samples = readLog(stream).samples;
    EXPECT_GT(samples.events()[0].sampleCount, 4);
    EXPECT_EQ(samples.events()[0].minimum + 1000 * samples.events()[0].maximum, 99099)
        << "of its own request";
    EXPECT_EQ(cell(0, 2), QString::number(samples.events()[0].sampleCount));
}

TEST_F(WindowsEndToEnd, TheScannerListsWhatTheVehicleAnswers)
{
    plugIn("--no-announcement --latency 0");
    form = new scanForm(context);
    form->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form)); // else no box gets the focus
    const std::pair<const char*, const char*> boxes[] = {
        {"cmdHead", "6810f1"}, {"modeStart", "3"}, {"modeStop", "3"}, {"pidStart", "\b"}, {"pidStop", "\b"}};
    for (const auto& [name, text] : boxes) {
        auto* box = control<QLineEdit>(name);
        box->setFocus();
        box->selectAll();
        QTest::keyClicks(box, QLatin1String(text));
    }
    click("comScan");
    EXPECT_TRUE(showsStatus("com1 Scan Completed 1 Events(s)")) << textOf("statusBox").toStdString();
    const std::string shown = control<PlainTextBox>("outBox")->text();
    EXPECT_NE(shown.find("Header: 6810F1 Mode:3-3 Pid:- Suffix:\r\nV 03  01 33 03 01 C1 23 \r\nScan "),
              std::string::npos)
        << shown;
}

} // namespace
} // namespace zint
