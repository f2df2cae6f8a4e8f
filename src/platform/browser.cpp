#include "platform/browser.h"

#include "platform/text.h"
#include "shared/programInfo.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QUrl>

namespace zint {
namespace {

/// The address of the help pages that come with the program: beside it on Windows, in the shared data
/// elsewhere.
std::string ownHelpSite()
{
    const QDir programFolder(QCoreApplication::applicationDirPath());
#ifdef Q_OS_WIN
    const QString folder = programFolder.filePath(QStringLiteral("help"));
#else
    const QString folder = programFolder.filePath(QStringLiteral("../share/zint-obd/help"));
#endif
    return fromQt(QUrl::fromLocalFile(QDir::cleanPath(folder)).toString(QUrl::FullyEncoded));
}

void openAddress(const ProgramValues& values, const std::string& address)
{
    if (!values.browserPath.empty())
        QProcess::startDetached(toQt(values.browserPath), {toQt(address)});
}

} // namespace

void openHelpPage(const ProgramValues& values, const std::string& page)
{
    const ProgramInfo& info = programInfo();
    openAddress(values, info.helpAddress(info.helpSite.empty() ? ownHelpSite() : info.helpSite, page));
}

void openWebSite(const ProgramValues& values)
{
    if (programInfo().webSite.empty())
        openHelpPage(values, {});
    else
        openAddress(values, programInfo().webSite);
}

} // namespace zint
