#pragma once

#include "report/reportSections.h"

#include <string>
#include <tuple>
#include <vector>

namespace zint {

/// What has changed from one report of a vehicle to a later one: codes that are gone or new, monitors that
/// stand otherwise. Control units go by their names.
struct ReportComparison {
    struct Code {
        std::string unit;
        CodeKind kind = CodeKind::stored;
        std::string code;

        bool operator<(const Code& other) const
        {
            return std::tie(unit, kind, code) < std::tie(other.unit, other.kind, other.code);
        }
    };
    struct Monitor {
        std::string unit;
        std::string name;
        MonitorState before = MonitorState::unsupported;
        MonitorState after = MonitorState::unsupported;
    };

    std::vector<Code> gone;
    std::vector<Code> added;
    std::vector<Monitor> monitors;

    bool isEmpty() const { return gone.empty() && added.empty() && monitors.empty(); }
};

ReportComparison compare(const VehicleFacts& before, const VehicleFacts& after);

/// The comparison in lines, such as "gone: P0420 (stored, 7E8)".
std::vector<std::string> comparisonLines(const ReportComparison& comparison);

/// The comparison as a section of the later report. @param earlier what the earlier one is called
ReportSection comparisonSection(const ReportComparison& comparison, const std::string& earlier);

} // namespace zint
