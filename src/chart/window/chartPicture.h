#pragma once

#include "chart/window/chartPlot.h"

#include <string>

class QPrinter;

namespace zint {

/// Whether a file with this name can be written; "a.png" and "a.pdf" can.
bool isPictureName(const std::string& path);

/// Writes what is shown as a picture, or as a PDF document if that is the path's ending. @throws FileError
void writeChart(ChartPlot& plot, const std::string& path, double devicePixelRatio = 1);

/// @return false when the printer can't be used; nothing is printed then
bool printChart(ChartPlot& plot, QPrinter& printer);

} // namespace zint
