#pragma once

#include "shared/programValues.h"

#include <QString>

#include <functional>
#include <string>

/// Help pages and web sites are shown in the user's browser.
namespace zint {

/// The program that opens ".HTM" files; empty when there is none.
std::string findBrowser();

/// Starts the program with an address, so that it outlives this one.
/// @param onFailure called, perhaps later, when it can't be started or soon ends because nothing shows such
/// pages
void startBrowser(const QString& program, const QString& address, const std::function<void()>& onFailure);

/// Called, perhaps later, with where a page is, for the user, when nothing shows it.
using PageNotShown = std::function<void(const std::string& place)>;

/// @param page a page's name without ending, such as "docstart2"; empty for the table of contents
void openHelpPage(const ProgramValues& values, const std::string& page, const PageNotShown& onFailure);

void openWebSite(const ProgramValues& values, const PageNotShown& onFailure);

} // namespace zint
