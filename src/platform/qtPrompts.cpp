#include "platform/qtPrompts.h"

#include "platform/text.h"
#include "shared/programInfo.h"

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

bool QtPrompts::confirm(const std::string& text, const std::string& title)
{
    QMessageBox box(&window_);
    prepare(box, QMessageBox::Question, text, title);
    box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
    box.setDefaultButton(QMessageBox::Cancel);
    return box.exec() == QMessageBox::Ok;
}

} // namespace zint
