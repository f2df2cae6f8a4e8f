#pragma once

#include <array>
#include <cstdint>
#include <string_view>

/// The mode-01 parameters that the program knows by name, and how often they may be polled.
namespace zint {

inline constexpr int pidCount = 32; ///< PIDs 00 to 1F

struct Pid {
    std::string_view name;
    std::int32_t defaultConversion; ///< a row of ConversionTable

    /// Whether vehicles answer it with data; what has no meaning is called "unused" or "unknown".
    constexpr bool hasMeaning() const { return name != "unused" && name != "unknown"; }
};

extern const std::array<Pid, pidCount> PidNames; ///< by PID

/// How often an event is polled that the program adds: once in so many loops.
inline constexpr std::int32_t defaultFrequency = 10;

extern const std::array<std::string_view, 14> PollChoices; ///< entries of the frequency chooser

} // namespace zint
