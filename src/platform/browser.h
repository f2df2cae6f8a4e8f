#pragma once

#include "shared/programValues.h"

#include <string>

/// Help pages and web sites are shown in the user's browser. With no browser found, both actions do nothing.
namespace zint {

/// The program that opens ".HTM" files; empty when there is none.
std::string findBrowser();

/// @param page a page's name without ending, such as "docstart2"; empty for the table of contents
void openHelpPage(const ProgramValues& values, const std::string& page);

void openWebSite(const ProgramValues& values);

} // namespace zint
