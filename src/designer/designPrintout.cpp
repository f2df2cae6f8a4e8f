#include "designer/designPrintout.h"

#include "designer/gridEditing.h"
#include "shared/module1.h"

namespace zint {
std::string designPrintout(const DesignGrid& grid, int sampleSpeed, const std::string& date)
{
    std::string html = "<h2>Polling Design</h2><p><b>" + htmlText(grid.title) + "</b><br>" + htmlText(date) +
                       "<br>&nbsp;&nbsp;&nbsp;Sample Speed: ";
    html += sampleSpeed == Design::automaticSpeed ? "Dynamic" : std::to_string(sampleSpeed) + "ms";
    html += "</p><table cellpadding=\"3\"><tr>";
    for (const GridHeading& heading : gridHeadings)
        html += "<th align=\"left\">" + std::string(heading.text) + "</th>";
    html += "</tr>";
    for (const GridRow& row : grid.rows) {
        html += "<tr>";
        for (const GridHeading& heading : gridHeadings)
            html += "<td>" + htmlText(cellText(row, heading.column)) + "</td>";
        html += "</tr>";
    }
    return html + "</table>";
}

} // namespace zint
