#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zint {

/// The protocols that a simulated vehicle can speak, with the numbers by which adapters know them.
enum class VehicleProtocol : unsigned { iso9141 = 3, can = 6 };

/// How a protocol carries an answer.
enum class Framing {
    shortMessages, ///< in messages of seven bytes at most; a long answer takes several
    isoTp,         ///< in one message that counts what it holds; a long one takes several frames
};

/// What tells one protocol from another. Of those that no simulated vehicle speaks only the name is known.
struct ProtocolTraits {
    std::string_view name;                          ///< the answer to "ATDP"
    std::string_view failure = "UNABLE TO CONNECT"; ///< the answer to a request when no vehicle speaks it
    std::string_view search;            ///< said while the adapter looks for the vehicle, before dots
    std::string_view found;             ///< said behind the dots
    std::uint32_t functionalHeader = 0; ///< of requests to all control units; the adapter's default
    std::uint32_t engineHeader = 0;     ///< of requests to the engine's control unit alone
    std::uint32_t addressBits = 0;      ///< of a header: those that tell whom it addresses
    std::size_t mostPids = 1;           ///< that one request may ask for
    Framing framing = Framing::shortMessages;
};

inline constexpr unsigned automaticProtocol = 0;
inline constexpr unsigned highestProtocol = 0xC;

/// @param number 0 to C, as in "ATSP"; 0 stands for an adapter that chooses by itself
const ProtocolTraits& protocolTraits(unsigned number);

} // namespace zint
