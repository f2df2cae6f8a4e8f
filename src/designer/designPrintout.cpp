#include "designer/designPrintout.h"

#include "designer/gridEditing.h"

#include <string_view>

namespace zint {
namespace {

std::string escaped(std::string_view text)
{
    std::string html;
    for (const char c : text) {
        switch (c) {
        case '<':
            html += "&lt;";
            break;
        case '>':
            html += "&gt;";
            break;
        case '&':
            html += "&amp;";
            break;
        default:
            html += c;
        }
    }
    return html;
}

} // namespace

std::string designPrintout(const DesignGrid& grid, int sampleSpeed, const std::string& date)
{
    std::string html = "<h2>Polling Design</h2><p><b>" + escaped(grid.title) + "</b><br>" + escaped(date) +
                       "<br>&nbsp;&nbsp;&nbsp;Sample Speed: ";
    html += sampleSpeed == Design::automaticSpeed ? "Dynamic" : std::to_string(sampleSpeed) + "ms";
    html += "</p><table cellpadding=\"3\"><tr>";
    for (const GridHeading& heading : gridHeadings)
        html += "<th align=\"left\">" + std::string(heading.text) + "</th>";
    html += "</tr>";
    for (const GridRow& row : grid.rows) {
        html += "<tr>";
        for (const GridHeading& heading : gridHeadings)
            html += "<td>" + escaped(cellText(row, heading.column)) + "</td>";
        html += "</tr>";
    }
    return html + "</table>";
}

} // namespace zint
