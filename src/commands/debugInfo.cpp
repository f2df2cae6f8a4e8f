#include "commands/debugInfo.h"

#include "chart/window/plotLibrary.h"
#include "commands/commandSession.h"
#include "dtcdb/databaseLibraries.h"
#include "platform/qtSettingsStore.h"
#include "platform/text.h"
#include "process/folders.h"
#include "shared/programInfo.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QSysInfo>

#include <vector>

namespace zint {
namespace {

#if defined(__clang__)
constexpr const char* compiler = "Clang " __clang_version__;
#elif defined(__GNUC__)
constexpr const char* compiler = "GCC " __VERSION__;
#elif defined(_MSC_VER)
constexpr const char* compiler = "MSVC";
#else
constexpr const char* compiler = "another compiler";
#endif

std::string withoutHome(const std::string& text)
{
    QString shown = toQt(text);
    for (const QString& home : {QDir::homePath(), QDir::toNativeSeparators(QDir::homePath())})
        shown.replace(home, QStringLiteral("~"));
    return fromQt(shown);
}

std::string fileText(const std::string& path)
{
    const bool isFile = !path.starts_with("HKEY_");
    return path + (isFile && !QFileInfo::exists(toQt(path)) ? " (missing)" : "");
}

std::string portText(const DetectedPort& port)
{
    std::string text = port.location;
    for (const std::string& more : {port.description, port.usbIds})
        text += more.empty() ? "" : " - " + more;
    const QFileInfo device(toQt(port.location));
    const bool isRefused = device.exists() && !(device.isReadable() && device.isWritable());
    return text + (isRefused ? " (no permission)" : "");
}

/// Lines of a list, each behind a blank or under the heading.
std::string listed(const char* heading, const std::vector<std::string>& lines)
{
    std::string text = std::string(heading) + ":" + (lines.empty() ? " none" : "") + "\n";
    for (const std::string& line : lines)
        text += "  " + line + "\n";
    return text;
}

std::string detectedText(const std::vector<DetectedPort>& ports)
{
    std::vector<std::string> lines;
    for (const DetectedPort& port : ports)
        lines.push_back(portText(port));
    return listed("Detected ports", lines);
}

std::string assignedText(const PortDirectory& directory, const std::vector<DetectedPort>& ports)
{
    std::vector<std::string> lines;
    for (const PortNumber port : allPorts) {
        const bool isAssigned = !directory.assignment(port).empty();
        lines.push_back(portName(port) + ": " + directory.target(port, ports).text() +
                        (isAssigned ? " (assigned)" : ""));
    }
    return listed("Ports", lines);
}

std::string systemText()
{
    return fromQt(QSysInfo::prettyProductName() + QStringLiteral(", ") + QSysInfo::kernelType() + u' ' +
                  QSysInfo::kernelVersion() + QStringLiteral(", ") + QSysInfo::currentCpuArchitecture() +
                  QStringLiteral(", ") + QLocale::system().name());
}

} // namespace

std::string debugInfo(const ConnectionOptions& options)
{
    const CommandSession session(options);
    const std::vector<DetectedPort> ports = session.ports().detected();
    const std::string text =
        programInfo().productName + " " + programInfo().version() + "\n" + "Built with " + compiler +
        ", Qt " QT_VERSION_STR " (runs with " + qVersion() + "), QCustomPlot " QCUSTOMPLOT_VERSION_STR ", " +
        databaseLibraries() + "\n" + "System: " + systemText() + "\n" +
        "Settings: " + fileText(QtSettingsStore().fileName()) + "\n" +
        "User's data: " + fileText(fromQt(userDataFolder())) + "\n" +
        "Program's data: " + fileText(fromQt(programDataFolder())) + "\n" +
        "Code descriptions: " + fileText(session.values.parmDTCdb) + "\n" +
        "Connection: " + portName(session.connection().port) + session.connection().speedText() + "\n" +
        detectedText(ports) + assignedText(session.ports(), ports);
    return withoutHome(text);
}

} // namespace zint
