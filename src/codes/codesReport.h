#pragma once

#include "codes/canCodes.h"
#include "codes/codesReading.h"
#include "shared/clock.h"
#include "shared/fileDialogs.h"
#include "shared/programValues.h"

#include <string>
#include <string_view>
#include <vector>

/// What a reading is told in.
namespace zint {

inline constexpr const char* noCodesText = "No codes reported";

/// Whether the light is on, in two parts with something between them.
std::string lightText(bool isLit, std::string_view between = {});

/// The caption over the listing.
std::string codesCaption(int reportedCodes);

/// Tells that the listing does not hold for a vehicle on CAN, with the codes of that layout behind it.
std::vector<std::string> canWarning(const std::vector<CanUnit>& units);

/// What is not shown of further control units that answered "0101"; empty when one did.
std::vector<std::string> otherUnitNotes(std::string_view statusReply);

/// Appends that more codes are stored than could be listed, if that is so.
void noteUnlisted(std::vector<std::string>& notes, int unlistedCodes);

/// What the window shows of a successful reading below the warning, as text for a terminal; lines end with a
/// line feed.
std::string codesReport(const CodesReading& reading);

/// Asks for a file and writes the warning and the report, under the date of the reading.
/// @return what the status shall say; empty when the user cancelled
/// @throws FileError when the file can't be written
std::string saveReport(FileDialogs& dialogs, ProgramValues& values, const CodesReading& reading,
                       const DateText& dateText);

} // namespace zint
