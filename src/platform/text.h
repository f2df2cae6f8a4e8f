#pragma once

#include "shared/controls.h"
#include "shared/module1.h"

#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QString>

#include <cmath>
#include <string>

/// Between the program's UTF-8 texts and the toolkit's.
namespace zint {

inline QString toQt(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// The same with line ends as the toolkit shows them; the program's are CR LF, those of replies CR alone.
inline QString toQtLines(std::string_view text)
{
    return toQt(text).replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(u'\r', u'\n');
}

inline std::string fromQt(const QString& text) { return text.toStdString(); }

/// A text as a tool tip that shows it as it stands.
inline QString tipText(std::string_view text)
{
    return text.empty() ? QString() : QStringLiteral("<p>") + toQt(htmlText(text)) + QStringLiteral("</p>");
}

/// Shows a text in a label or box, or a button's caption and state, when it differs from what is shown. A
/// screen reader is alerted to a new status, for the focus is elsewhere.
inline void display(QLabel& label, const std::string& text)
{
    const QString now = toQtLines(text);
    if (label.text() == now)
        return;
    label.setTextFormat(Qt::PlainText);
    label.setText(now);
    if (label.objectName() == QLatin1String("statusBox")) {
        QAccessibleEvent alert(&label, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

inline void display(QLineEdit& box, const std::string& text)
{
    if (const QString now = toQt(text); box.text() != now)
        box.setText(now);
}

inline void display(QPushButton& button, const Button& state)
{
    if (const QString now = toQt(state.caption); button.text() != now)
        button.setText(now);
    button.setEnabled(state.enabled);
}

/// The same with an icon that follows the caption.
inline void display(QPushButton& button, const Button& state, const char* icon)
{
    if (button.text() != toQt(state.caption))
        button.setIcon(QIcon::fromTheme(QLatin1String(icon)));
    display(button, state);
}

/// The percentage and what belongs to it.
inline void display(QProgressBar& bar, const ProgressBar& state)
{
    bar.setValue(static_cast<int>(std::lround(state.value * bar.maximum() / 100)));
    bar.setFormat(state.text.empty() ? QStringLiteral("%p%") : QStringLiteral("%p% - ") + toQt(state.text));
}

} // namespace zint
