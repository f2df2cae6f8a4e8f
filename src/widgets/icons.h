#pragma once

#include <QIcon>
#include <QString>

class QWidget;

namespace zint {

/// Lets icons that the desktop's theme lacks come from the program's own set, in the variant that suits the
/// colours. Called when the application object exists, and when its colours have changed.
void useOwnIcons();

/// Gives each button and action of a window that has a property "ownIcon" the icon of that name in the
/// program's own set. No desktop's theme has it, so that it would be sought in vain in thousands of places.
void giveOwnIcons(const QWidget& window);

/// An icon of the program's own set, drawn in the variant that suits the colours.
QIcon ownIcon(const QString& name);

/// Gives the program's windows its icon.
void useProgramIcon();

} // namespace zint
