#pragma once

#include "catalogue/design.h"
#include "samples/sampleStore.h"
#include "shared/progress.h"

#include <functional>
#include <ostream>
#include <string>
#include <string_view>

namespace zint {

/// What stands in front of the decimals of a number. Where that is a comma, semicolons stand between the
/// fields of a line.
enum class Decimals { point, comma };

char csvSeparator(Decimals decimals);

/// Adds a value of an event as a field, words in quotation marks where they need them.
void appendCsvValue(std::string& text, const DesignEntry& event, double value, Decimals decimals);

/// A time in seconds, with three decimals.
std::string csvSeconds(SampleTime time, Decimals decimals);

/// Whether a file's name says that it is a CSV file: it ends in .csv, in any case.
bool isCsvPath(std::string_view path);

/// Writes the samples as CSV (RFC 4180): a line of heads, then the rows that the table of writeExport() has.
/// The first column is the time in seconds, the others are the events.
/// @param complain told, in words for the user, of a sample that belongs to no event; the export goes on
/// @throws WorkStopped
void writeCsv(std::ostream& stream, const Design& design, const SampleStore& samples, Decimals decimals,
              const std::function<void(const std::string&)>& complain, Progress& progress = unwatched);

} // namespace zint
