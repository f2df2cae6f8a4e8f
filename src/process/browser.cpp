#include "process/browser.h"

#include "platform/text.h"
#include "process/folders.h"
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

/// Where the user finds what has an address.
std::string placeOf(const std::string& address)
{
    const QUrl url(toQt(address));
    return url.isLocalFile() ? fromQt(QDir::toNativeSeparators(url.toLocalFile())) : address;
}

void openAddress(const ProgramValues& values, const std::string& address, const PageNotShown& onFailure)
{
    const auto tell = [address, onFailure] { onFailure(placeOf(address)); };
    if (values.browserPath.empty())
        tell();
    else
        startBrowser(toQt(values.browserPath), toQt(address), tell);
}

} // namespace

void openHelpPage(const ProgramValues& values, const std::string& page, const PageNotShown& onFailure)
{
    const ProgramInfo& info = programInfo();
    const std::string site = info.helpSite.empty() ? ownHelpSite() : info.helpSite;
    openAddress(values, info.helpAddress(site, page), onFailure);
}

void openWebSite(const ProgramValues& values, const PageNotShown& onFailure)
{
    const std::string& site = programInfo().webSite;
    if (site.empty())
        openHelpPage(values, {}, onFailure);
    else
        openAddress(values, site, onFailure);
}

} // namespace zint
