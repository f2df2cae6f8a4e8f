#pragma once

#include <string>

namespace zint {

/// What a panel says of a button.
struct Button {
    std::string caption;
    bool enabled = true;
};

} // namespace zint
