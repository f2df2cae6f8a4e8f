#include "platform/plainTextBox.h"

#include "platform/text.h"

#include <QFontDatabase>

namespace zint {

PlainTextBox::PlainTextBox(QWidget* parent) : QPlainTextEdit(parent)
{
    setUndoRedoEnabled(false); // it would keep each text once more
    setTextInteractionFlags(Qt::TextSelectableByKeyboard | Qt::TextSelectableByMouse);
    setTabChangesFocus(true);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
}

void PlainTextBox::append(const std::string& text)
{
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    end.insertText(toQt(text));
    showEnd();
}

void PlainTextBox::replace(const std::string& text)
{
    setPlainText(toQt(text));
    showEnd();
}

std::string PlainTextBox::text() const
{
    QString text = document()->toRawText(); // the plain text has changed some blanks
    return fromQt(text.replace(QChar::ParagraphSeparator, QLatin1String("\r\n")));
}

void PlainTextBox::showEnd()
{
    moveCursor(QTextCursor::End);
    ensureCursorVisible();
}

} // namespace zint
