#pragma once

#include <cstdint>
#include <string>

namespace zint {

/// What the terminal counts while its window is open.
struct TerminalCounters {
    static constexpr const char* initialText = "Bytes In: 0  Out: 0     Errors: 0";

    std::int32_t bytesIn = 0;
    std::int32_t messagesReceived = 0;
    std::int32_t bytesOut = 0;
    std::int32_t commandsSent = 0;
    std::int32_t totalErrors = 0;
    std::int32_t messageUnderflow = 0; ///< shown, and always 0: no adapter of today reports one
    std::int32_t commandFailed = 0;
    std::int32_t commandSyntaxErrors = 0;

    std::string line() const;       ///< for the window
    std::string statistics() const; ///< all of them, lines separated by CR LF
};

} // namespace zint
