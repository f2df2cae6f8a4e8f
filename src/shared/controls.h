#pragma once

#include <string>

namespace zint {

/// What a panel says of a button.
struct Button {
    std::string caption;
    bool enabled = true;
};

/// What a panel says of a progress bar.
struct ProgressBar {
    double value = 0; ///< percent
    std::string text; ///< beside the percentage, such as "2:05 left"; may be empty
};

} // namespace zint
