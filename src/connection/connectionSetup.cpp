#include "connection/connectionSetup.h"

#include "link/portLocation.h"
#include "platform/dateText.h"
#include "platform/text.h"
#include "process/browser.h"
#include "process/folders.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace zint {
namespace {

constexpr QLatin1String portKey("port");
constexpr QLatin1String locationKey("location");
constexpr QLatin1String speedKey("speed");
constexpr QLatin1String designKey("design");

/// A location as it holds in any folder.
QString inAnyFolder(const std::string& location)
{
    const PortLocation place = portLocation(location);
    const QString file = toQt(place.path);
    const bool isRecording = place.kind == PortLocation::Kind::recording;
    if (!isRecording && (place.kind != PortLocation::Kind::device || !file.contains(u'/')))
        return toQt(location);
    return toQt(location).replace(toQt(location).lastIndexOf(file), file.size(),
                                  QFileInfo(file).absoluteFilePath());
}

} // namespace

Launcher::System launcherSystem()
{
    return {.workingFolder = fromQt(QDir::toNativeSeparators(workingFolder())),
            .pathSeparator = static_cast<char>(QDir::separator().unicode()),
            .sampleFolder =
                fromQt(QDir::toNativeSeparators(programDataFolder() + QStringLiteral("/designs"))),
            .descriptionsFile =
                fromQt(QDir::toNativeSeparators(programDataFolder() + QStringLiteral("/dtc.txt"))),
            .findBrowser = findBrowser,
            .userDataFolder = fromQt(userDataFolder()),
            .dateText = dateText};
}

void applyForThisRun(const ConnectionOptions& options, PortDirectory& ports)
{
    if (options.portNumber && !options.portLocation.empty())
        ports.assignForThisRun(*options.portNumber, options.portLocation);
}

void applyForThisRun(const ConnectionOptions& options, Launcher& launcher)
{
    if (options.portNumber)
        launcher.choosePortForThisRun(*options.portNumber);
    if (options.speedPosition)
        launcher.chooseSpeedForThisRun(*options.speedPosition);
}

QByteArray toLine(const StartOptions& options)
{
    const ConnectionOptions& connection = options.connection;
    QJsonObject object;
    if (connection.portNumber)
        object[portKey] = static_cast<int>(*connection.portNumber);
    if (!connection.portLocation.empty())
        object[locationKey] = inAnyFolder(connection.portLocation);
    if (connection.speedPosition)
        object[speedKey] = *connection.speedPosition;
    if (!options.designPath.empty())
        object[designKey] = toQt(options.designPath);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

StartOptions fromLine(const QByteArray& line)
{
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    ConnectionOptions options;
    if (const PortNumber port{object[portKey].toInt()}; std::ranges::find(allPorts, port) != allPorts.end())
        options.portNumber = port;
    options.portLocation = fromQt(object[locationKey].toString());
    if (const QJsonValue position = object[speedKey]; position.isDouble())
        options.speedPosition = position.toInt();
    return {.connection = options, .designPath = fromQt(object[designKey].toString())};
}

} // namespace zint
