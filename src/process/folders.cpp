#include "process/folders.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

namespace zint {

QString programDataFolder()
{
    const QString programFolder = QCoreApplication::applicationDirPath();
#ifdef Q_OS_WIN
    return programFolder;
#else
    return QDir::cleanPath(programFolder + QStringLiteral("/../share/zint-obd"));
#endif
}

QString userDataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Zint");
}

} // namespace zint
