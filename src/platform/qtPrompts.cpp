#include "platform/qtPrompts.h"

#include "platform/rememberedSize.h"
#include "platform/text.h"
#include "shared/programInfo.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QCompleter>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace zint {
namespace {

QString titleOf(const std::string& title) { return toQt(title.empty() ? programInfo().productName : title); }

/// Shows what stands in a dialog as it is. A file may be named q<b>z.mdb.
void showPlain(const QDialog& box)
{
    for (QLabel* label : box.findChildren<QLabel*>())
        label->setTextFormat(Qt::PlainText);
}

void prepare(QMessageBox& box, QMessageBox::Icon icon, const std::string& text, const std::string& title)
{
    box.setIcon(icon);
    box.setWindowTitle(titleOf(title));
    box.setText(toQtLines(text));
    showPlain(box);
}

/// The buttons under what a dialog shows.
void addButtons(QDialog& box, QDialogButtonBox::StandardButtons which)
{
    auto* buttons = new QDialogButtonBox(which, &box);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &box, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &box, &QDialog::reject);
    box.layout()->addWidget(buttons);
}

/// Whether a text has too many lines for a message box, which does not scroll.
bool isLong(const QWidget& window, const std::string& text)
{
    const int room = window.screen()->availableSize().height() * 2 / 3;
    return std::ranges::count(text, '\n') > std::min(30, room / window.fontMetrics().lineSpacing());
}

/// A message box that scrolls, for a text that would not fit on the screen.
void showLongText(QWidget& window, const std::string& text, const std::string& title)
{
    QDialog box(&window);
    box.setWindowTitle(titleOf(title));
    auto* layout = new QVBoxLayout(&box);
    auto* lines = new QPlainTextEdit(toQtLines(text), &box);
    lines->setReadOnly(true);
    lines->setAccessibleName(box.windowTitle());
    layout->addWidget(lines);
    addButtons(box, QDialogButtonBox::Ok);
    box.resize(460, 560);
    fitToScreen(box);
    box.exec();
}

/// Shows itself when the work takes longer than one likes to wait.
class ProgressBox final : public Progress {
public:
    ProgressBox(QWidget& window, const std::string& text)
        : box_(toQt(text), QCoreApplication::translate("QtPrompts", "Stop"), 0, whole, &window)
    {
        box_.setWindowTitle(titleOf({}));
        showPlain(box_);
        box_.setWindowModality(Qt::WindowModal);
        box_.setMinimumDuration(500);
        box_.setAutoReset(false);
        sinceShown_.start();
    }

    void advance(double done) override
    {
        constexpr qint64 often = 50; // ms; showing takes time as well
        if (sinceShown_.elapsed() < often)
            return;
        box_.setValue(static_cast<int>(done * whole)); // handles the user's events too
        sinceShown_.restart();
        if (box_.wasCanceled())
            throw WorkStopped();
    }

private:
    static constexpr int whole = 1000;

    QProgressDialog box_;
    QElapsedTimer sinceShown_;
};

} // namespace

void QtPrompts::message(const std::string& text, const std::string& title, const std::string& reason)
{
    if (isLong(window_, text)) {
        showLongText(window_, reason.empty() ? text : text + "\r\n\r\n" + reason, title);
        return;
    }
    QMessageBox box(&window_);
    box.setInformativeText(toQtLines(reason));
    prepare(box, QMessageBox::Information, text, title);
    box.exec();
}

void QtPrompts::tellOfSilence(const std::string& text, const std::string& reason)
{
    QMessageBox box(&window_);
    box.setInformativeText(toQtLines(reason));
    prepare(box, QMessageBox::Information, text, {});
    box.setStandardButtons(QMessageBox::Ok | QMessageBox::Help);
    box.setEscapeButton(QMessageBox::Ok);
    const QAbstractButton* const save =
        saveExchange ? box.addButton(QCoreApplication::translate("QtPrompts", "&Save Last Exchange..."),
                                     QMessageBox::ActionRole)
                     : nullptr;
    for (;;) {
        const int pressed = box.exec();
        if (pressed == QMessageBox::Help)
            helpOnSilence();
        else if (save != nullptr && box.clickedButton() == save)
            saveExchange();
        else
            return;
    }
}

std::optional<std::string> QtPrompts::input(const std::string& text, const std::string& title,
                                            const std::string& initial)
{
    QInputDialog box(&window_);
    box.setWindowTitle(titleOf(title));
    box.setLabelText(toQtLines(text));
    box.setTextValue(toQt(initial));
    showPlain(box);
    return box.exec() == QDialog::Accepted ? std::optional(fromQt(box.textValue())) : std::nullopt;
}

std::optional<std::string> QtPrompts::inputOrChoose(const std::string& text, const std::string& title,
                                                    const std::vector<std::string>& choices)
{
    QStringList list;
    for (const std::string& choice : choices)
        list << toQt(choice);
    QInputDialog box(&window_);
    box.setWindowTitle(titleOf(title));
    box.setLabelText(toQtLines(text));
    box.setComboBoxItems(list);
    box.setComboBoxEditable(true);
    box.setTextValue({});
    showPlain(box);
    const QLineEdit* line = box.findChild<QComboBox*>()->lineEdit();
    line->completer()->setCompletionMode(QCompleter::PopupCompletion);         // never adds to what is typed
    QObject::connect(line, &QLineEdit::returnPressed, &box, &QDialog::accept); // with the list open, too
    return box.exec() == QDialog::Accepted ? std::optional(fromQt(box.textValue())) : std::nullopt;
}

std::optional<std::size_t> QtPrompts::choose(const std::string& text, const std::string& title,
                                             const std::vector<std::string>& lines)
{
    QDialog box(&window_);
    box.setWindowTitle(titleOf(title));
    auto* layout = new QVBoxLayout(&box);
    auto* label = new QLabel(toQtLines(text), &box);
    layout->addWidget(label);
    auto* list = new QListWidget(&box);
    label->setBuddy(list);
    list->setAccessibleName(label->text());
    for (const std::string& line : lines)
        list->addItem(toQt(line));
    list->setCurrentRow(0);
    layout->addWidget(list);
    addButtons(box, QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    showPlain(box);
    QObject::connect(list, &QListWidget::itemActivated, &box, &QDialog::accept);
    constexpr int margins = 60;
    box.resize(std::clamp(list->sizeHintForColumn(0) + margins, 460, 760), 300);
    if (box.exec() != QDialog::Accepted)
        return std::nullopt;
    return static_cast<std::size_t>(list->currentRow());
}

bool QtPrompts::confirm(const std::string& text, const std::string& title)
{
    QMessageBox box(&window_);
    prepare(box, QMessageBox::Question, text, title);
    box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
    box.setDefaultButton(QMessageBox::Cancel);
    return box.exec() == QMessageBox::Ok;
}

bool QtPrompts::runLong(const std::string& text, const std::function<void(Progress&)>& work)
{
    ProgressBox progress(window_, text);
    try {
        work(progress);
        return true;
    } catch (const WorkStopped&) {
        return false;
    }
}

} // namespace zint
