#pragma once

#include "report/reportSections.h"
#include "shared/clock.h"

#include <string>
#include <vector>

namespace zint {

/// What stands at the beginning of a report in each form.
struct ReportHead {
    std::string title;    ///< "Vehicle report", with the VIN when it is known
    std::string date;     ///< as the user reads it
    std::string headline; ///< see headlineOf()
    std::string failure;  ///< why it is not whole; may be empty
};

/// @param failure why the report is not whole; may be empty
ReportHead headOf(const VehicleFacts& facts, const DateText& dateText, const std::string& failure);

/// A report as plain text, in lines that end with a line feed; tables in columns.
std::string reportText(const ReportHead& head, const std::vector<ReportSection>& sections);

/// A section as a part of such a text.
std::string sectionText(const ReportSection& section);

/// A section as a part of such a page: cells of a mark have its class, "m1" for ok and so on.
std::string sectionHtml(const ReportSection& section);

/// A report as a page of HTML with its own style: it needs no other file, and prints well.
std::string reportHtml(const ReportHead& head, const std::vector<ReportSection>& sections);

} // namespace zint
