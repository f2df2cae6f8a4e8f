#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace zint {

/// The protocols that a simulated vehicle can speak, with the numbers by which adapters know them.
enum class VehicleProtocol : unsigned {
    pwm = 1,
    vpw = 2,
    iso9141 = 3,
    kwpSlow = 4,
    kwpFast = 5,
    can = 6,
    can29 = 7,
    can250 = 8,
    can29At250 = 9,
};

/// How a protocol carries an answer.
enum class Framing {
    shortMessages, ///< in messages of seven bytes at most; a long answer takes several
    isoTp,         ///< in one message that counts what it holds; a long one takes several frames
};

/// What stands in front of a message.
enum class HeaderForm {
    threeBytes, ///< two that are always the same, and the sender
    withLength, ///< a byte that tells the length, the receiver, the sender
    id11,       ///< an identifier of three digits
    id29,       ///< an identifier of four bytes, the last of which is the sender
};

/// What stands behind a message, where the adapter shows it.
enum class CheckByte { none, sum, crc };

/// The identifiers on a CAN bus that an adapter takes: those that are alike in the bits of the mask.
struct FrameFilter {
    std::uint32_t identifier = 0;
    std::uint32_t mask = 0; ///< 0: it takes all

    bool takes(std::uint32_t other) const { return ((identifier ^ other) & mask) == 0; }
};

/// What tells one protocol from another. Of those that no simulated vehicle speaks only the name is known.
struct ProtocolTraits {
    std::string_view name;                          ///< the answer to "ATDP"
    std::string_view option = {};                   ///< what a command line calls it
    std::string_view failure = "UNABLE TO CONNECT"; ///< the answer to a request when no vehicle speaks it
    std::string_view search = {};       ///< said while the adapter looks for the vehicle, before dots
    int searchDots = 3;                 ///< which come one by one
    std::string_view found = {};        ///< said behind the dots
    std::uint32_t functionalHeader = 0; ///< of requests to all control units; the adapter's default
    std::uint32_t unitHeader = 0;       ///< of requests to one alone, without its address; not of 11 bits
    std::uint32_t addressBits = 0;      ///< of a header: those that tell whom it addresses
    std::size_t mostPids = 1;           ///< that one request may ask for
    Framing framing = Framing::shortMessages;
    HeaderForm headerForm = HeaderForm::threeBytes;
    std::uint32_t replyHeader =
        0;                     ///< the bytes of an answer's header that are always the same; not of 11 bits
    FrameFilter receives = {}; ///< the answers that adapters show unless they are told otherwise
    CheckByte check = CheckByte::none;
    bool refusesUnsupported = false; ///< what a unit does not have is refused, not passed over in silence
};

inline constexpr unsigned automaticProtocol = 0;
inline constexpr unsigned highestProtocol = 0xC;

/// @param number 0 to C, as in "ATSP"; 0 stands for an adapter that chooses by itself
const ProtocolTraits& protocolTraits(unsigned number);

/// The protocol of a name such as "kwp-fast"; nothing for a name of none.
std::optional<VehicleProtocol> vehicleProtocol(std::string_view option);

} // namespace zint
