#include "platform/icons.h"

#include <QGuiApplication>
#include <QIcon>
#include <QPalette>

static void initialiseIconResource()
{
    Q_INIT_RESOURCE(icons);
} // must stand outside any namespace

namespace zint {

void useOwnIcons()
{
    initialiseIconResource();
    const bool dark = QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
    QIcon::setThemeSearchPaths(QIcon::themeSearchPaths() << QStringLiteral(":/icons"));
    QIcon::setFallbackThemeName(dark ? QStringLiteral("zint-dark") : QStringLiteral("zint"));
}

} // namespace zint
