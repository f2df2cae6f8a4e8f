#include "codes/codesReport.h"

#include <algorithm>
#include <string_view>

namespace zint {
namespace {

std::string withoutCarriageReturns(std::string text)
{
    std::erase(text, '\r');
    return text;
}

/// The label breaks its text into two lines, the first of which ends in a blank.
std::string inOneLine(std::string text)
{
    std::erase_if(text, [](char c) { return c == '\r' || c == '\n'; });
    return text;
}

std::string indented(std::string_view lines)
{
    std::string result;
    for (std::size_t start = 0; start < lines.size();) {
        const auto end = std::min(lines.find('\n', start), lines.size());
        result += "  " + std::string(lines.substr(start, end - start)) + "\n";
        start = end + 1;
    }
    return result;
}

} // namespace

std::string codesReport(const CodesPanel& panel, int reportedCodes)
{
    std::string report = inOneLine(panel.stateMIL);
    report += "\n\n" + panel.diagCodeFrame + "\n" + indented(withoutCarriageReturns(panel.codesOutput));

    const auto listed = std::ranges::count(panel.codesOutput, '\n');
    if (reportedCodes > listed)
        report += "  (" + std::to_string(reportedCodes - listed) +
                  " more: only the first line of the vehicle's answer is listed)\n";

    report += "\nReadiness\n";
    for (const std::string& line : panel.readiness)
        report += "  " + line + "\n";
    return report;
}

} // namespace zint
