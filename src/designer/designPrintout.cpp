#include "designer/designPrintout.h"

#include "designer/gridEditing.h"
#include "designer/sampleSpeed.h"
#include "shared/module1.h"

namespace zint {
namespace {

std::string lineUnlessEmpty(const std::string& caption, const std::string& text)
{
    return text.empty() ? "" : "<br>" + caption + htmlText(text);
}

std::string tableRow(const DesignEntry& row)
{
    std::string html = "<tr>";
    for (const GridHeading& heading : gridHeadings)
        html += "<td>" + htmlText(cellText(row, heading.column)) + "</td>";
    return html + "</tr>";
}

} // namespace

std::string designPrintout(const Design& design, const std::string& file, const std::string& date)
{
    const std::string indent = "&nbsp;&nbsp;&nbsp;";
    std::string html = "<h2>Polling Design</h2><p><b>" + htmlText(design.title) + "</b>" +
                       lineUnlessEmpty("", file) + "<br>" + htmlText(date) + "<br>" + indent +
                       "Sample Speed: ";
    html += design.sampleSpeed ? speedText(design.sampleSpeed) : "Dynamic";
    html += lineUnlessEmpty(indent + "Init Commands: ", design.extraCommands);
    html += "</p><table cellpadding=\"3\"><tr>";
    for (const GridHeading& heading : gridHeadings)
        html += "<th align=\"left\">" + std::string(heading.text) + "</th>";
    html += "</tr>";
    for (const DesignEntry& row : design.events)
        html += tableRow(row);
    return html + "</table>";
}

} // namespace zint
