#pragma once

#include "sim/vehicle.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zint {

/// What "AT" commands set.
struct AdapterSettings {
    static constexpr unsigned defaultTimeout = 0x32;

    bool echo = true;
    bool lineFeeds = false;
    bool blanks = true;
    bool headers = false;
    bool lengthDigit = false; ///< of CAN frames, behind the identifier
    bool autoFormat = true;   ///< control bytes of CAN frames are added to requests and taken from replies
    unsigned timeout = defaultTimeout; ///< of the vehicle's answer, in units of 4 ms
    bool adaptiveTiming = true;        ///< otherwise the adapter always waits for the whole time-out
    std::optional<std::uint32_t> header;
    std::optional<std::uint32_t> receiveIdentifier; ///< nothing: as the protocol has it
    std::optional<std::uint32_t> receiveMask;       ///< likewise
    unsigned protocol = automaticProtocol;          ///< chosen with "ATSP" or "ATTP"
    unsigned storedProtocol = automaticProtocol;    ///< the one of "ATSP", which survives a reset
    bool connected = false;                         ///< to the vehicle
    bool lineFeedsAtPowerUp = false;                ///< a matter of the adapter's wiring
    bool mindsHeaderForm = false;                   ///< likewise: refuses headers that don't fit the protocol

    /// Which answers are shown.
    FrameFilter filter(const ProtocolTraits& spoken) const;

    /// Back to what they were at power-up.
    void restoreDefaults();
};

enum class Reset { none, warm, cold };

/// What comes of a command.
struct CommandResult {
    std::string text;          ///< the answer, without line ends
    Reset reset = Reset::none; ///< what the adapter does before it answers
};

/// Carries out a command.
/// @param command without blanks and the leading "AT", in capitals
/// @return the answer, "?" for an unknown command
CommandResult runCommand(std::string_view command, AdapterSettings& settings, const Vehicle& vehicle);

} // namespace zint
