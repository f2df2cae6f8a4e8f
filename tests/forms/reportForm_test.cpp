#include "forms/formTest.h"
#include "report/window/reportForm.h"

#include <QClipboard>
#include <QFileDialog>
#include <QListWidget>
#include <QTextBrowser>

namespace zint {
namespace {

using ReportFormTest = FormTest;

TEST_F(ReportFormTest, ReadsShowsSectionsSavesAndKeeps)
{
    open<reportForm>(context);
    adapter->expect("ATI\r").answer("ATI\rELM327 v1.5\r\r>");
    for (const char* command :
         {"ATE0", "ATWS", "ATE0", "ATL0", "ATH1", "ATS0", "ATAL", "ATAT1", "AT@1", "ATRV"})
        adapter->expect(command + std::string("\r")).answer("OK\r\r>");
    const std::pair<const char*, const char*> exchanges[] = {
        {"0100", "7E806410080000000"}, {"ATDPN", "A6"},     {"0101", "7E806410181076504"},
        {"03", "7E80443010133"},       {"07", "7E8024700"}, {"0A", "7E8037F0A11"},
        {"020200", "7E8054202000000"}};
    for (const auto& [request, answer] : exchanges)
        adapter->expect(request + std::string("\r")).answer(answer + std::string("\r\r>"));
    adapter->expect("ATD\r");
    click("quick");
    EXPECT_EQ(enabled("readReport clearCodes mnuSaveReport mnuCopy"), "readReport");
    press("Alt+R");
    EXPECT_EQ(shown("readReport"), "Stop");
    adapter->play();
    EXPECT_EQ(enabled("readReport clearCodes mnuSaveReport mnuCopy"),
              "readReport clearCodes mnuSaveReport mnuCopy");
    EXPECT_TRUE(shown("headline")
                    .starts_with("The Check Engine light is on. 1 code stored. 1 of 7 monitors not ready"))
        << shown("headline");
    EXPECT_TRUE(values.carSupport.source.starts_with("vehicle report of "));
    EXPECT_TRUE(values.carSupport.supported.test(0x01));
    auto* sections = control<QListWidget>("sections");
    EXPECT_EQ(sections->item(0)->text(), u"Trouble codes - attention");
    const auto* details = control<QTextBrowser>("details");
    EXPECT_TRUE(details->toPlainText().contains(u"P0133"));
    sections->setCurrentRow(1);
    EXPECT_TRUE(details->toPlainText().contains(u"Misfire\nready"));
    EXPECT_TRUE(std::filesystem::exists(folder.path("reports/unknown"))) << "it is kept";
    click("mnuCopy");
    EXPECT_TRUE(QGuiApplication::clipboard()->text().startsWith(u"Vehicle report\n"));
    for (const char* name : {"report.html", "report.pdf"}) {
        inNextDialog([&](QDialog& dialog) {
            qobject_cast<QFileDialog*>(&dialog)->selectFile(toQt(folder.path(name)));
            dialog.accept();
        });
        click("mnuSaveReport");
        EXPECT_EQ(shown("statusBox"), std::string(name) + " saved");
    }
    EXPECT_TRUE(contents(folder.path("report.pdf")).starts_with("%PDF"));
    closeBy("backCom");
}

} // namespace
} // namespace zint
