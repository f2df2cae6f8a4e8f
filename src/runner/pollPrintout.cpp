#include "runner/pollPrintout.h"

#include "shared/module1.h"

namespace zint {
namespace {

std::string cell(const char* tag, const std::string& text, bool right)
{
    return std::string("<") + tag + (right ? " align=\"right\">" : " align=\"left\">") + htmlText(text) +
           "</" + tag + ">";
}

/// The times and counters of the run that is shown: of one out of a file only the start is known.
std::string factsOf(const Poller& poller, const DateText& dateText)
{
    const PollPanel& panel = poller.panel();
    std::string html;
    if (!poller.samples().isEmpty())
        html += "<br>First start: " + htmlText(poller.firstStartText());
    if (!poller.samples().isEmpty() && !poller.isOpened())
        html += "<br>Last start: " + htmlText(dateText(poller.lastStart()));
    html += "</p><p>" + htmlText(panel.statLab1);
    if (!poller.isOpened())
        html +=
            "<br>" + htmlText(panel.labelStats) + " (no data: " + std::to_string(poller.noDataCount()) + ")";
    return html + "</p>";
}

} // namespace

std::string pollPrintout(const Poller& poller, const DateText& dateText)
{
    const PollPanel& panel = poller.panel();
    std::string html = "<h2>Polling Summary</h2><p><b>" + htmlText(panel.titleLab) + "</b>" +
                       factsOf(poller, dateText) + "<table cellpadding=\"3\"><tr>" +
                       cell("th", "Description", false);
    for (const char* heading : {"Value", "Samples", "Min", "Max"})
        html += cell("th", heading, true);
    html += "</tr>";
    for (const PollPanel::Row& row : panel.obdGrid) {
        html += "<tr>" + cell("td", row.description, false);
        for (const std::string& text : {row.value, row.samples, row.minimum, row.maximum})
            html += cell("td", text, true);
        html += "</tr>";
    }
    return html + "</table>";
}

} // namespace zint
