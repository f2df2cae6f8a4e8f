#pragma once

#include "catalogue/design.h"

#include <deque>
#include <string>
#include <string_view>

namespace zint {

/// What the adapter is told before the first request, separated by ";": the design's extra commands, and its
/// sample speed unless the adapter has that by itself.
std::string openingCommands(const Design& design);

/// The commands of such a text; between two ";" there is an empty one, behind the last there is none.
std::deque<std::string> commandsIn(std::string_view text);

} // namespace zint
