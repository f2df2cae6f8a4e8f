#pragma once

#include <cstdint>
#include <string>

namespace zint {

/// What a tool window counts since it was opened.
struct LinkCounters {
    std::int64_t bytesIn = 0;  ///< characters received
    std::int64_t bytesOut = 0; ///< characters sent, carriage returns included
    std::int64_t errors = 0;   ///< time-outs, rejected or garbled replies, unexpected notices, lost adapters

    /// Shown until the counters are shown for the first time; its blanks differ from text()'s on purpose.
    static constexpr const char* initialText = "Bytes In: 0  Out: 0     Errors: 0";

    std::string text() const
    {
        return "Bytes In: " + std::to_string(bytesIn) + " Out: " + std::to_string(bytesOut) +
               " Errors: " + std::to_string(errors);
    }
};

} // namespace zint
