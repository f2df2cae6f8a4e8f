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

QString workingFolder()
{
    const QString folder = QDir::currentPath();
#ifdef Q_OS_WIN
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    for (const QString& others :
         {QCoreApplication::applicationDirPath(), qEnvironmentVariable("SystemRoot")}) {
        const QString inside = QDir::fromNativeSeparators(others) + QLatin1Char('/');
        if (!others.isEmpty() && (folder + QLatin1Char('/')).startsWith(inside, Qt::CaseInsensitive))
            return documents.isEmpty() ? QDir::homePath() : documents;
    }
#endif
    return folder;
}

QString userDataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Zint");
}

} // namespace zint
