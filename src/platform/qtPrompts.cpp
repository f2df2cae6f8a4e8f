#include "platform/qtPrompts.h"

#include "platform/text.h"
#include "shared/programInfo.h"

#include <QDialogButtonBox>
#include <QInputDialog>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include <algorithm>

namespace zint {
namespace {

constexpr int mostLines = 30; // of a message box that does not scroll

QString titleOf(const std::string& title) { return toQt(title.empty() ? programInfo().productName : title); }

void prepare(QMessageBox& box, QMessageBox::Icon icon, const std::string& text, const std::string& title)
{
    box.setIcon(icon);
    box.setWindowTitle(titleOf(title));
    box.setTextFormat(Qt::PlainText);
    box.setText(toQtLines(text));
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
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, &box);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &box, &QDialog::accept);
    layout->addWidget(buttons);
    box.resize(460, 560);
    box.exec();
}

} // namespace

void QtPrompts::message(const std::string& text, const std::string& title)
{
    if (std::ranges::count(text, '\n') > mostLines) {
        showLongText(window_, text, title);
        return;
    }
    QMessageBox box(&window_);
    prepare(box, QMessageBox::Information, text, title);
    box.exec();
}

std::optional<std::string> QtPrompts::input(const std::string& text, const std::string& title,
                                            const std::string& initial)
{
    bool accepted = false;
    const QString answer =
        QInputDialog::getText(&window_, toQt(title), toQt(text), QLineEdit::Normal, toQt(initial), &accepted);
    return accepted ? std::optional(fromQt(answer)) : std::nullopt;
}

bool QtPrompts::confirm(const std::string& text, const std::string& title)
{
    QMessageBox box(&window_);
    prepare(box, QMessageBox::Question, text, title);
    box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
    box.setDefaultButton(QMessageBox::Cancel);
    return box.exec() == QMessageBox::Ok;
}

} // namespace zint
