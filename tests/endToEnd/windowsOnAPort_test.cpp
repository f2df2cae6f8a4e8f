#include "catalogue/designFile.h"
#include "designer/window/pollSetup2.h"
#include "endToEnd/fixedRun.h"
#include "endToEnd/simulator.h"
#include "forms/formTest.h"
#include "runner/window/obdPollForm.h"
#include "scanner/window/scanForm.h"
#include "widgets/plainTextBox.h"

#include <QLineEdit>
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

    /// Runs the event loop until the status shows the text.
    void expectStatus(const char* text)
    {
        EXPECT_TRUE(waitUntil([&] { return textOf("statusBox") == QLatin1String(text); }))
            << textOf("statusBox").toStdString();
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
    expectStatus("com1 Closed - 9 of 22 events disabled. This is a hint: see Help.");
    int disabled = 0;
    for (int i = 0; i < control<QTableView>("obdGrid")->model()->rowCount(); ++i)
        disabled += cell(i, 3) == u"0" ? 1 : 0;
    EXPECT_EQ(disabled, 18) << "of the 31 rows of the default design";
}

TEST_F(WindowsEndToEnd, TheRunnerWritesWhatTheVehicleSentAndGoesOnAfterACut)
{
    std::istringstream stream(fixedDesign);
    design = readDesign(stream);
    dropUnpolled(design); // as the designer hands it over
    plugIn(
        "--no-announcement --latency 20 --pieces 1 --disconnect-after 10"); // the reply that ends loop 4 of 6
    form = new obdPollForm(context);
    form->show();
    control<QLineEdit>("textSampleCnt")->clear();
    QTest::keyClicks(control<QLineEdit>("textSampleCnt"), QStringLiteral("6"));
    trigger("mnuResetVal");
    const auto started = std::chrono::system_clock::now();
    click("comStart");
    expectStatus("com1 - adapter disconnected");
    EXPECT_EQ(cell(0, 1) + u' ' + cell(0, 2), u"99kPa 4");
    const std::string log = savedBy("mnuSaveLog", "cut", ".log");
    expectFourLoops(log, savedBy("mnuExportLog", "cut", ".txt"), started);

    // stopped in the middle of a request
    plugIn("--no-announcement --latency 150 --late-defaults 200 --keep-unread");
    trigger("mnuComStart");
    expectStatus("com1 Polling");
    QTest::qWait(70);
    trigger("mnuComStart");
    trigger("mnuComStart");
    expectStatus("Completed Polling, all samples filled");
    EXPECT_GT(cell(0, 2).toInt(), 4);
    EXPECT_EQ(cell(0, 3) + u' ' + cell(0, 4), u"99kPa 99kPa") << "of its own request";
}

TEST_F(WindowsEndToEnd, TheScannerListsWhatTheVehicleAnswers)
{
    plugIn("--no-announcement --latency 0");
    form = new scanForm(context);
    form->show();
    click("comScan");
    expectStatus("com1 Scan Completed 32 Events(s)");
    EXPECT_NE(control<PlainTextBox>("outBox")->text().find("\r\nV 0100  BE 3F B8 13 \r\n"),
              std::string::npos);
}

} // namespace
} // namespace zint
