#pragma once

#include "platform/text.h"
#include "shared/controls.h"

#include <QAccessible>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVariant>

#include <cmath>
#include <string>

namespace zint {

/// Shows a text in a label, or a button's caption and state, when it differs from what is shown. A
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

/// Shows a text in a box, which does not tell of it: nobody has typed it.
inline void display(QLineEdit& box, const std::string& text)
{
    const QSignalBlocker shown(box);
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

/// Where a cell's text stands, as a model tells it.
inline QVariant alignment(bool right)
{
    return QVariant::fromValue<Qt::Alignment>((right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
}

/// The percentage and what belongs to it.
inline void display(QProgressBar& bar, const ProgressBar& state)
{
    bar.setValue(static_cast<int>(std::lround(state.value * bar.maximum() / 100)));
    bar.setFormat(state.text.empty() ? QStringLiteral("%p%") : QStringLiteral("%p% - ") + toQt(state.text));
}

} // namespace zint
