#pragma once

#include "chart/window/chartLines.h"

#include <string>

class QPrinter;

namespace zint {

/// Whether a file with this name can be written; "a.png" and "a.pdf" can.
bool isPictureName(const std::string& path);

/// Writes what is shown as a picture, or as a PDF document if that is the path's ending, the lines' names
/// below it. @throws FileError
void writeChart(ChartLines& lines, const std::string& path, double devicePixelRatio = 1);

/// @return false when the printer can't be used; nothing is printed then
bool printChart(ChartLines& lines, QPrinter& printer);

} // namespace zint
