#include "platform/icons.h"

#include <QGuiApplication>
#include <QIcon>
#include <QPalette>

static void initialiseIconResource() { Q_INIT_RESOURCE(icons); } // must stand outside any namespace

namespace zint {

void useOwnIcons()
{
    initialiseIconResource();
    const bool dark = QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
    if (QIcon::themeName().isEmpty())
        QIcon::setThemeName(
            QStringLiteral("hicolor")); // without any theme the toolkit passes over the fallback too
    QIcon::setFallbackThemeName(dark ? QStringLiteral("zint-dark") : QStringLiteral("zint"));
    QIcon::setThemeSearchPaths(QIcon::themeSearchPaths()); // icons that were looked up before are so again
}

void useProgramIcon() { QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/zint-obd.svg"))); }

} // namespace zint
