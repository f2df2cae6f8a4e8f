#pragma once

#include "report/reportComparison.h"
#include "report/reportText.h"
#include "report/vehicleFacts.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zint {

/// A report as JSON, for programs and to be read again; its members are described in docs/formats.md.
/// @param exchanges of a transcript, which follow the report; none for a vehicle that was asked
/// @param comparison with an earlier report; nothing: there is none
std::string reportJson(const ReportHead& head, const VehicleFacts& facts,
                       const std::vector<ExchangeReading>& exchanges = {},
                       const std::optional<ReportComparison>& comparison = {});

/// What a report in JSON tells of codes and monitors, for a comparison.
/// @param path of its file, which errors name
/// @throws FileError for a text that is no such report
VehicleFacts factsInJson(std::string_view text, const std::string& path);

/// What the exchanges of a transcript come to. Of a request that was sent again the last answer counts.
VehicleFacts factsOf(const std::vector<ExchangeReading>& exchanges);

} // namespace zint
