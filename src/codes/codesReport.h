#pragma once

#include "codes/codesPanel.h"

#include <string>

namespace zint {

/// What the trouble-code window shows after a successful exchange, as text for a terminal; lines end with a
/// line feed.
/// @param reportedCodes how many codes the vehicle says it stores
std::string codesReport(const CodesPanel& panel, int reportedCodes);

} // namespace zint
