#include "platform/browser.h"

#include "platform/folders.h"
#include "platform/text.h"
#include "shared/programInfo.h"

#include <QProcess>
#include <QUrl>

namespace zint {
namespace {

/// The address of the help pages that come with the program.
std::string ownHelpSite()
{
    const QString folder = programDataFolder() + QStringLiteral("/help");
    return fromQt(QUrl::fromLocalFile(folder).toString(QUrl::FullyEncoded));
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
