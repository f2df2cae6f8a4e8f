#include "widgets/toolForm.h"

#include "platform/rememberedSize.h"
#include "platform/text.h"
#include "process/browser.h"
#include "shared/programInfo.h"
#include "widgets/icons.h"
#include "widgets/windowPrinter.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPointer>
#include <QShortcut>
#include <QTimer>
#include <QToolBar>

#include <exception>
#include <utility>

namespace zint {

toolForm::toolForm(ToolContext& context, std::string helpPage)
    : context_(context), helpPage_(std::move(helpPage)), prompts_(*this),
      recordMenu_(*this, context.shell.record(), context.values, prompts_)
{
    setAttribute(Qt::WA_DeleteOnClose);
    prompts_.helpOnSilence = [this] { showHelp(silencePage); };
    prompts_.saveExchange = [this] { saveLastExchange(); };
    gate_.onError = [this](const std::string& text, const std::string& reason) {
        prompts().message(text, {}, reason);
    };
}

toolForm::~toolForm() = default;

void toolForm::setUpMenu(QAction* mnuExit, QAction* mnuAbout, QAction* mnuHelp)
{
    onTrigger(mnuExit, &toolForm::goBack);
    onAsking(mnuAbout, &QAction::triggered, [this] { mnuAbout_Click(); });
    onAsking(mnuHelp, &QAction::triggered, [this] { mnuHelp_Click(); });
    for (QObject* const place : mnuAbout->associatedObjects()) {
        if (auto* const help = qobject_cast<QMenu*>(place))
            setUpRecordMenu(*help);
    }
}

void toolForm::setUpRecordMenu(QMenu& help)
{
    const RecordMenu::Entries entries = recordMenu_.addTo(help);
    onAsking(entries.record, &QAction::triggered, [this] { recordMenu_.recordOrStop(); });
    onAsking(entries.save, &QAction::triggered, [this] { saveLastExchange(); });
}

/// The window that was shown last tells what becomes of the recording, between events: the exchange goes on.
void toolForm::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    recordMenu_.refresh();
    context_.shell.record().onEnded = [form = QPointer(this)](const std::string& why) {
        if (form)
            QTimer::singleShot(0, form, [form, why] { form->tellRecordingEnded(why); });
    };
}

void toolForm::tellRecordingEnded(const std::string& why)
{
    recordMenu_.refresh();
    if (closing_ != Closing::unloaded)
        ask([this, &why] { prompts().message(why); });
}

void toolForm::setUpPrinting(QAction* mnuPrintSetup, QAction* mnuPrintOut)
{
    onAsking(mnuPrintSetup, &QAction::triggered, [this] { mnuPrintSetup_Click(); });
    onAsking(mnuPrintOut, &QAction::triggered, [this] { mnuPrintOut_Click(); });
}

void toolForm::setUpLogos(std::initializer_list<QPushButton*> logos)
{
    for (QPushButton* logo : logos) {
        logo->setText(toQt(programInfo().maker));
        onAsking(logo, &QPushButton::clicked, [this] { logo_Click(); });
    }
}

void toolForm::setUpKeys(std::initializer_list<ButtonKey> keys)
{
    for (const auto& [key, button] : keys) {
        auto* const shortcut = new QShortcut(QKeySequence(QLatin1String(key)), this);
        connect(shortcut, &QShortcut::activated, button, &QPushButton::click); // which passes the gate
    }
}

void toolForm::setUpWindow()
{
    giveOwnIcons(*this);
    restoreSize(*this, context_.settings);
}

void toolForm::nameToolButtons(const QToolBar& bar, std::initializer_list<ToolButton> buttons)
{
    for (const ToolButton& button : buttons) {
        QWidget* widget = bar.widgetForAction(button.action);
        widget->setObjectName(QLatin1String(button.name));
        widget->setAccessibleName(button.action->iconText());
    }
}

bool toolForm::isReturn(const QKeyEvent& event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

void toolForm::pressFocused(QPushButton* otherwise)
{
    auto* const focused = qobject_cast<QPushButton*>(focusWidget());
    if (QPushButton* const button = focused != nullptr ? focused : otherwise)
        button->click();
}

void toolForm::ask(const std::function<void()>& questions)
{
    ++asking_;
    try {
        endEditing();
        questions();
    } catch (...) { // the gate is where actions that fail end
        gate_.run([error = std::current_exception()] { std::rethrow_exception(error); });
    }
    if (--asking_ == 0 && closing_ == Closing::afterQuestions) {
        closing_ = Closing::no;
        close();
    }
}

/// A handler that is on the stack, perhaps with a message box open, comes to its end before the window goes.
void toolForm::closeEvent(QCloseEvent* event)
{
    if (closing_ != Closing::unloaded) {
        if (asking_ > 0)
            closing_ = Closing::afterQuestions; // the dialog belongs to the window and would go with it
        else
            gate_.run([this] { unload(); });
    }
    event->setAccepted(closing_ == Closing::unloaded);
}

void toolForm::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange)
        useOwnIcons();
    QMainWindow::changeEvent(event);
}

void toolForm::unload()
{
    // It was closed twice while it waited.
    if (std::exchange(closing_, Closing::unloaded) == Closing::unloaded)
        return;
    gate_.run([this] { leave(); }); // comes next, also when what follows throws
    Form_Unload();
    rememberSize(*this, context_.settings);
}

void toolForm::leave()
{
    Q_EMIT unloaded();
    close(); // for one that had to wait
}

void toolForm::goBack() { close(); }

void toolForm::mnuAbout_Click() { prompts().message(programInfo().aboutText()); }

void toolForm::mnuHelp_Click() { showHelp(helpPage_); }

void toolForm::logo_Click() { openWebSite(context_.values, tellingOfPage()); }

void toolForm::showHelp(const std::string& page) { openHelpPage(context_.values, page, tellingOfPage()); }

/// It may take some time until that shows; by then the window may have closed.
std::function<void(const std::string&)> toolForm::tellingOfPage()
{
    return [form = QPointer(this)](const std::string& place) {
        if (!form || form->closing_ == Closing::unloaded)
            return;
        form->ask([&] {
            form->prompts().message("No program was found that shows web pages. The page is " + place);
        });
    };
}

void toolForm::mnuPrintSetup_Click() { printer().setUp(); }

void toolForm::mnuPrintOut_Click() { printer().print(); }

bool toolForm::printOn(QPrinter& printer) { return printImage(*this, printer); }

WindowPrinter& toolForm::printer()
{
    if (!printer_)
        printer_ =
            std::make_unique<WindowPrinter>(*this, prompts_, [this](QPrinter& p) { return printOn(p); });
    return *printer_;
}

} // namespace zint
