#include "platform/browser.h"

#include "platform/folders.h"
#include "platform/text.h"
#include "shared/programInfo.h"

#include <QDir>
#include <QUrl>

namespace zint {
namespace {

/// The address of the help pages that come with the program.
std::string ownHelpSite()
{
    const QString folder = programDataFolder() + QStringLiteral("/help");
    return fromQt(QUrl::fromLocalFile(folder).toString(QUrl::FullyEncoded));
}

std::string openAddress(const ProgramValues& values, const std::string& address)
{
    if (!values.browserPath.empty() && startBrowser(toQt(values.browserPath), toQt(address)))
        return {};
    const QUrl url(toQt(address));
    return url.isLocalFile() ? fromQt(QDir::toNativeSeparators(url.toLocalFile())) : address;
}

} // namespace

std::string openHelpPage(const ProgramValues& values, const std::string& page)
{
    const ProgramInfo& info = programInfo();
    return openAddress(values, info.helpAddress(info.helpSite.empty() ? ownHelpSite() : info.helpSite, page));
}

std::string openWebSite(const ProgramValues& values)
{
    const std::string& site = programInfo().webSite;
    return site.empty() ? openHelpPage(values, {}) : openAddress(values, site);
}

} // namespace zint
