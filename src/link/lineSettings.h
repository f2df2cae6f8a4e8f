#pragma once

#include <string_view>

namespace zint {

/// A serial line's settings; the tools use 8 data bits, no parity and 1 stop bit only.
struct LineSettings {
    int bitsPerSecond = 9600;

    /// Reads "9600,N,8,1". @throws CommError when the text has another form or a speed below 1
    static LineSettings parse(std::string_view text);
};

} // namespace zint
