#include "platform/browser.h"
#include "platform/text.h"

#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include <algorithm>
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

bool startBrowser(const QString& program, const QString& address)
{
    if (!program.endsWith(QLatin1String("/xdg-open")))
        return QProcess::startDetached(program, {address});
    // It can always be started. What tells whether it found a browser is how it ends, unless it becomes one.
    constexpr int patienceMs = 2000;
    auto* process = new QProcess; // may outlive the program
    QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
    process->setProcessChannelMode(QProcess::ForwardedChannels);
    process->setChildProcessModifier([] { ::setsid(); }); // a Ctrl-C is not for the browser
    process->start(program, {address});
    return !process->waitForFinished(patienceMs) || process->exitCode() == 0;
}

} // namespace zint
