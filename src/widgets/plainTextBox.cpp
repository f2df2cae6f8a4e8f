#include "widgets/plainTextBox.h"

#include "platform/text.h"
#include "widgets/fixedFont.h"

#include <QResizeEvent>

#include <utility>

namespace zint {
namespace {

/// Stands for the character 0 in the box: other programs, such as screen readers and the clipboard's, would
/// take that for the end of the text.
constexpr QChar nulSymbol(0x2400);

} // namespace

PlainTextBox::PlainTextBox(QWidget* parent) : QPlainTextEdit(parent), throttle_([this] { showPending(); })
{
    setUndoRedoEnabled(false); // it would keep each text once more
    setTextInteractionFlags(Qt::TextSelectableByKeyboard | Qt::TextSelectableByMouse);
    setTabChangesFocus(true);
    setFont(fixedFont());
}

void PlainTextBox::append(const std::string& text)
{
    pending_ += text;
    throttle_.request();
}

void PlainTextBox::replace(const std::string& text)
{
    pending_ = text;
    isNewText_ = true;
    throttle_.request();
}

std::string PlainTextBox::text() const
{
    // The document's plain text would have lost the blanks that do not break.
    QString text = isNewText_ ? QString() : document()->toRawText().replace(QChar::ParagraphSeparator, u'\n');
    text.replace(nulSymbol, QChar::Null);
    text += toQtLines(pending_);
    return fromQt(text.replace(u'\n', QLatin1String("\r\n")));
}

/// The end stays in view when the box becomes smaller.
void PlainTextBox::resizeEvent(QResizeEvent* event)
{
    const bool isEndInView = QRect(QPoint(), event->oldSize()).contains(cursorRect().center());
    QPlainTextEdit::resizeEvent(event);
    if (isEndInView)
        ensureCursorVisible();
}

void PlainTextBox::showPending()
{
    const QString text = toQt(std::exchange(pending_, {})).replace(QChar::Null, nulSymbol);
    if (std::exchange(isNewText_, false)) {
        setPlainText(text);
    } else {
        QTextCursor end(document());
        end.movePosition(QTextCursor::End);
        end.insertText(text);
    }
    moveCursor(QTextCursor::End);
    ensureCursorVisible();
}

} // namespace zint
