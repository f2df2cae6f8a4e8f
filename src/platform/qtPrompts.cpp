#include "platform/qtPrompts.h"

#include "platform/text.h"
#include "shared/programInfo.h"

#include <QInputDialog>
#include <QMessageBox>

namespace zint {
namespace {

void prepare(QMessageBox& box, QMessageBox::Icon icon, const std::string& text, const std::string& title)
{
    box.setIcon(icon);
    box.setWindowTitle(toQt(title.empty() ? programInfo().productName : title));
    box.setTextFormat(Qt::PlainText);
    box.setText(toQtLines(text));
}

} // namespace

void QtPrompts::message(const std::string& text, const std::string& title)
{
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
