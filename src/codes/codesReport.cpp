#include "codes/codesReport.h"

#include "codes/codesPanel.h"
#include "codes/replyText.h"
#include "shared/textFile.h"

#include <algorithm>

namespace zint {
namespace {

std::string indented(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += "  " + line + "\n";
    return text;
}

} // namespace

std::string lightText(bool isLit, std::string_view between)
{
    return "Service Engine Soon Light is " + std::string(between) + (isLit ? "ON" : "OFF");
}

std::string codesCaption(int reportedCodes)
{
    const std::string caption = CodesPanel::codesFrameCaption;
    return reportedCodes < 1 ? caption : caption + ": " + std::to_string(reportedCodes) + " code(s) reported";
}

std::vector<std::string> canWarning(const std::vector<CanUnit>& units)
{
    std::vector<std::string> lines{
        "This vehicle answers in the CAN layout: the list below is shifted and does not "
        "show its codes."};
    for (std::size_t i = 0; i < units.size(); ++i) {
        const CanUnit& unit = units[i];
        lines.push_back("Read in that layout" +
                        (units.size() > 1 ? ", control unit " + std::to_string(i + 1) : std::string()) + ":");
        lines.insert(lines.end(), unit.codes.begin(), unit.codes.end());
        if (unit.unreadCodes > 0)
            lines.push_back("(" + std::to_string(unit.unreadCodes) + " more could not be read)");
        else if (unit.codes.empty())
            lines.emplace_back("No codes");
    }
    return lines;
}

std::vector<std::string> otherUnitNotes(std::string_view statusReply)
{
    const auto units = unitStatuses(statusReply);
    if (units.size() < 2)
        return {};
    std::vector<std::string> notes{std::to_string(units.size()) +
                                   " control units answered; what is shown is the first one's."};
    for (std::size_t i = 1; i < units.size(); ++i)
        notes.push_back("Control unit " + std::to_string(i + 1) + ": light " +
                        (units[i].isLit ? "ON, " : "OFF, ") + std::to_string(units[i].codes) +
                        " code(s) reported");
    return notes;
}

void noteUnlisted(std::vector<std::string>& notes, int unlistedCodes)
{
    if (unlistedCodes > 0)
        notes.push_back("(" + std::to_string(unlistedCodes) +
                        (unlistedCodes == 1 ? " more is" : " more are") + " stored than could be listed)");
}

std::string codesReport(const CodesReading& reading)
{
    std::string report = lightText(reading.isLit) + "\n\n" + codesCaption(reading.reportedCodes) + "\n";
    report += reading.reportedCodes < 1 ? indented({noCodesText}) : indented(reading.listing);
    report += indented(reading.notes) + "\nReadiness\n" +
              indented({reading.readiness.begin(), reading.readiness.end()});
    std::erase(report, '\r'); // of a reply that was read as codes
    return report;
}

std::string saveReport(FileDialogs& dialogs, ProgramValues& values, const CodesReading& reading,
                       const DateText& dateText)
{
    const std::string path = dialogs.chooseToSave(textFileKinds, values.parmInitDir, "check-engine.txt");
    if (path.empty())
        return {};
    std::string text = "Check Engine, " + dateText(reading.time) + "\n\n";
    for (const std::string& line : reading.canWarning)
        text += line + "\n";
    text += (reading.canWarning.empty() ? "" : "\n") + codesReport(reading);
    replaceFile(path, [&text](std::ostream& stream) {
        for (const char character : text)
            character == '\n' ? stream << lineEnd : stream << character;
    });
    values.rememberFolderOf(path);
    return fileNamePart(path) + " saved";
}

} // namespace zint
