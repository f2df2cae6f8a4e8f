#include "endToEnd/simulator.h"

#include <stdexcept>

namespace zint {
namespace {

constexpr int patienceMs = 20000;

} // namespace

Simulator::Simulator(const QStringList& options)
{
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_.start(QStringLiteral(ZINT_SIM), options);
    if (!process_.waitForReadyRead(patienceMs))
        throw std::runtime_error("zint-sim does not start");
    path_ = QString::fromUtf8(process_.readLine()).trimmed();
}

Simulator::~Simulator()
{
    process_.terminate();
    process_.waitForFinished(patienceMs);
}

Outcome runZint(const QStringList& arguments)
{
    const QTemporaryDir home;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(QLatin1String(name));
    for (const char* name : {"HOME", "XDG_CONFIG_HOME"})
        environment.insert(QLatin1String(name), home.path());

    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(home.path());
    process.start(QStringLiteral(ZINT_OBD), arguments);
    const bool ended = process.waitForFinished(patienceMs) && process.exitStatus() == QProcess::NormalExit;
    return {ended ? process.exitCode() : -1, process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
}

} // namespace zint
