#pragma once

#include "dtcdb/codeDescriptions.h"
#include "report/vehicleFacts.h"

#include <string>
#include <vector>

/// A report as sections and tables, which windows, pages and texts show each in their way.
namespace zint {

/// How a thing stands.
enum class Mark { none, ok, attention, failed, notSupported };

/// A mark in a word, such as "attention"; empty for none.
std::string wordOf(Mark mark);

struct ReportCell {
    std::string text;
    Mark mark = Mark::none;
};

struct ReportTable {
    std::string title; ///< such as the control unit's name; may be empty
    std::vector<std::string> columns;
    std::vector<std::vector<ReportCell>> rows;
};

struct ReportSection {
    std::string title;
    Mark mark = Mark::none;
    std::string note; ///< in place of tables, or above them; may be empty
    std::vector<ReportTable> tables;
};

/// The sections of a report, each of them, also those that nothing was told of.
/// @param descriptions of codes; null: there are none
std::vector<ReportSection> sectionsOf(const VehicleFacts& facts, CodeDescriptions* descriptions);

/// A section of mere lines in one column, such as what has changed.
ReportSection linesSection(std::string title, std::string column, const std::vector<std::string>& lines);

/// A unit as a reader knows it: "7E8 (ECM-EngineControl)", or its name alone.
std::string unitText(const std::string& name, const UnitReading& unit);

/// The vehicle's identification number; empty when no unit has told it.
std::string vinOf(const VehicleFacts& facts);

/// A monitor's state in words: "not ready".
std::string stateText(MonitorState state);

/// A number as it is shown, with at most three decimals.
std::string numberText(double number);

} // namespace zint
