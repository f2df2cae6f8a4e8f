#pragma once

#include <string>
#include <vector>

namespace zint {

/// Names for a question, each on a line of its own; of many the first ones, and how many more there are.
std::string listedNames(const std::vector<std::string>& names);

} // namespace zint
