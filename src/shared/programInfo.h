#pragma once

#include <string>
#include <string_view>

namespace zint {

/// What the program says of itself. Version and addresses are set where the program is configured for
/// building.
struct ProgramInfo {
    std::string productName;
    std::string legalNotice;
    int major = 0;
    int minor = 0;
    int revision = 0;
    std::string maker;       ///< shown as the logo
    std::string helpSite;    ///< where the help pages are; empty: those that come with the program
    std::string webSite;     ///< what the logo opens; empty: the first help page
    std::string supportText; ///< where the connection-trouble dialog sends users

    /// "1.5.1"
    std::string version() const;

    /// The about box's text, lines ended by CR LF.
    std::string aboutText() const;

    /// The address of a help page at the given site. An empty page name means the table of contents.
    std::string helpAddress(std::string_view site, std::string_view page) const;
};

/// This program's own.
const ProgramInfo& programInfo();

} // namespace zint
