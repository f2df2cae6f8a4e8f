#pragma once

#include "shared/programValues.h"

#include <QString>

#include <string>

/// Help pages and web sites are shown in the user's browser.
namespace zint {

/// The program that opens ".HTM" files; empty when there is none.
std::string findBrowser();

/// Starts the program with an address, so that it outlives this one. @return false when it can't be started
/// or ends at once because nothing shows such pages
bool startBrowser(const QString& program, const QString& address);

/// @param page a page's name without ending, such as "docstart2"; empty for the table of contents
/// @return where the page is, for the user, when nothing shows it; empty when it is shown
std::string openHelpPage(const ProgramValues& values, const std::string& page);

/// @return as openHelpPage()
std::string openWebSite(const ProgramValues& values);

} // namespace zint
