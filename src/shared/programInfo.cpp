#include "shared/programInfo.h"

#include "shared/buildConfiguration.h"

namespace zint {

std::string ProgramInfo::version() const
{
    return std::to_string(major) + "." + std::to_string(minor) + "." + std::to_string(revision);
}

std::string ProgramInfo::aboutText() const
{
    return productName + " Version " + version() + "\r\n" + legalNotice + "\r\n";
}

std::string ProgramInfo::helpAddress(std::string_view site, std::string_view page) const
{
    std::string address(site);
    address += "/Zintv" + std::to_string(major) + std::to_string(minor) + std::to_string(revision) + "/";
    address += page.empty() ? "doctop" : page;
    return address + ".html";
}

const ProgramInfo& programInfo()
{
    static const ProgramInfo info{
        .productName = "Zint",
        .legalNotice = "Free software under the GNU General Public License, version 3 or later; "
                       "it comes with no warranty.",
        .major = ZINT_VERSION_MAJOR,
        .minor = ZINT_VERSION_MINOR,
        .revision = ZINT_VERSION_PATCH,
        .maker = ZINT_MAKER,
        .helpSite = ZINT_HELP_SITE,
        .webSite = ZINT_WEB_SITE,
        .supportText = ZINT_SUPPORT_TEXT,
    };
    return info;
}

} // namespace zint
