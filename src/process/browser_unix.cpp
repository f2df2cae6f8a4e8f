#include "platform/text.h"
#include "process/browser.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include <algorithm>
#include <chrono>
#include <unistd.h>
#include <utility>

namespace zint {
namespace {

/// The program of a command that takes nothing but the address ("firefox %u"). One with further arguments is
/// not found: the program alone would do something else.
QString programOf(const QString& command)
{
    const QStringList words = QProcess::splitCommand(command);
    if (words.isEmpty() ||
        !std::ranges::all_of(words.mid(1), [](const QString& w) { return w.startsWith(u'%'); }))
        return {};
    return QStandardPaths::findExecutable(words.first());
}

/// The value of `key` in the lines of a desktop file that follow `[group]`.
QString desktopValue(const QString& path, const QString& group, const QString& key)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    bool inGroup = false;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (line.startsWith(u'['))
            inGroup = line == QLatin1Char('[') + group + QLatin1Char(']');
        else if (inGroup && line.section(u'=', 0, 0).trimmed() == key)
            return line.section(u'=', 1).trimmed();
    }
    return {};
}

/// $BROWSER lists commands, the preferred one first.
QString chosenByEnvironment()
{
    for (const QString& command : qEnvironmentVariable("BROWSER").split(u':', Qt::SkipEmptyParts)) {
        if (QString program = programOf(command); !program.isEmpty())
            return program;
    }
    return {};
}

/// What the desktop's list of default programs names for web pages.
QString chosenByDesktop()
{
    const QString listName = QStringLiteral("mimeapps.list");
    QStringList lists = QStandardPaths::locateAll(QStandardPaths::GenericConfigLocation, listName);
    lists += QStandardPaths::locateAll(QStandardPaths::ApplicationsLocation, listName);
    for (const QString& list : std::as_const(lists)) {
        const QString entries =
            desktopValue(list, QStringLiteral("Default Applications"), QStringLiteral("text/html"));
        for (const QString& entry : entries.split(u';', Qt::SkipEmptyParts)) {
            const QString file = QStandardPaths::locate(QStandardPaths::ApplicationsLocation, entry);
            const QString command =
                desktopValue(file, QStringLiteral("Desktop Entry"), QStringLiteral("Exec"));
            if (QString program = programOf(command); !program.isEmpty())
                return program;
        }
    }
    return {};
}

} // namespace

std::string findBrowser()
{
    QString program = chosenByEnvironment();
    if (program.isEmpty())
        program = chosenByDesktop();
    if (program.isEmpty())
        program = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    return fromQt(program);
}

void startBrowser(const QString& program, const QString& address, const std::function<void()>& onFailure)
{
    if (!program.endsWith(QLatin1String("/xdg-open"))) {
        if (!QProcess::startDetached(program, {address}))
            onFailure();
        return;
    }
    // What tells whether it found a browser is how it ends, unless it becomes one and ends much later.
    auto* process = new QProcess; // may outlive the program
    const QDeadlineTimer soon(std::chrono::seconds(10));
    QObject::connect(process, &QProcess::finished, process, [=](int exitCode) {
        process->deleteLater();
        if (exitCode != 0 && !soon.hasExpired())
            onFailure();
    });
    QObject::connect(process, &QProcess::errorOccurred, process, [=](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        process->deleteLater();
        onFailure();
    });
    process->setProcessChannelMode(QProcess::ForwardedChannels);
    process->setChildProcessModifier([] { ::setsid(); }); // a Ctrl-C is not for the browser
    process->start(program, {address});
}

} // namespace zint
