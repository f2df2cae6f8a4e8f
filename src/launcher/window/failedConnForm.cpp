#include "launcher/window/failedConnForm.h"

#include "launcher/window/ui_failedConnForm.h"
#include "platform/text.h"
#include "shared/programInfo.h"
#include "widgets/display.h"

namespace zint {
namespace {

constexpr const char* tooOldText =
    "OBD2 standards were in effect in the U.S. in 1996. Vehicles older than that used "
    "different standards which we do not support.";
constexpr const char* badHardwareText =
    "Check all connections. Also try unplugging the adapter from vehicle and computer, re-attaching the "
    "computer, wait, then vehicle";
constexpr const char* ignitionOnText = "The vehicle ignition must be ON, preferably with engine running";

} // namespace

failedConnForm::failedConnForm(ToolContext& context)
    : toolForm(context, "docchken2"), ui(std::make_unique<Ui::failedConnForm>())
{
    ui->setupUi(this);
    display(*ui->failedRpt, context.values.lastFailureText);
    display(*ui->Label4, programInfo().supportText);
    display(*ui->adviceLab, context.shell.connection().advice());
    onClick(ui->tooOld, &failedConnForm::tooOld_Click);
    onClick(ui->badHardware, &failedConnForm::badHardware_Click);
    onClick(ui->ignitionOn, &failedConnForm::ignitionOn_Click);
    onClick(ui->checkCom, &failedConnForm::checkCom_Click);
    onClick(ui->applyCom, &failedConnForm::applyCom_Click);
    onClick(ui->cancelCom, &failedConnForm::cancelCom_Click);
    onClick(ui->helpCom, &failedConnForm::helpCom_Click);
    onAsking(ui->saveExchange, &QPushButton::clicked, [this] { saveLastExchange(); });
    setUpLogos({ui->logo, ui->logo2});
    setUpWindow();
}

failedConnForm::~failedConnForm() = default;

void failedConnForm::tooOld_Click() { display(*ui->detail1, tooOldText); }

void failedConnForm::badHardware_Click() { display(*ui->detail1, badHardwareText); }

void failedConnForm::ignitionOn_Click() { display(*ui->detail1, ignitionOnText); }

void failedConnForm::checkCom_Click()
{
    context().shell.switchTo(Tool::doctor);
    close();
}

void failedConnForm::applyCom_Click() { close(); }

void failedConnForm::cancelCom_Click() { close(); }

void failedConnForm::helpCom_Click() { showHelp(silencePage); }

} // namespace zint
