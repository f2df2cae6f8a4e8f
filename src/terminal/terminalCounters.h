#pragma once

#include <cstdint>
#include <string>

namespace zint {

/// What the terminal counts while its window is open.
struct TerminalCounters {
    std::int64_t bytesIn = 0;
    std::int64_t messagesReceived = 0;
    std::int64_t bytesOut = 0;
    std::int64_t commandsSent = 0;
    std::int64_t totalErrors = 0;
    std::int64_t messageUnderflow = 0; ///< shown, and always 0: no adapter of today reports one
    std::int64_t commandFailed = 0;
    std::int64_t commandSyntaxErrors = 0;

    std::string line() const;       ///< for the window
    std::string statistics() const; ///< all of them, lines separated by CR LF
};

} // namespace zint
