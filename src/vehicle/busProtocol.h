#pragma once

#include <optional>
#include <string_view>

namespace zint {

/// What a vehicle speaks on its bus, by the numbers of adapters ("ATSP6", "ATDPN").
enum class BusProtocol : char {
    unknown = '0',
    j1850Pwm = '1',
    j1850Vpw = '2',
    iso9141 = '3',
    kwpSlowInit = '4',
    kwpFastInit = '5',
    can11At500 = '6',
    can29At500 = '7',
    can11At250 = '8',
    can29At250 = '9',
    j1939 = 'A',
};

/// Whether messages come in frames by ISO 15765-2.
bool isCan(BusProtocol protocol);

/// Whether the frames have identifiers of 29 bits.
bool hasLongIds(BusProtocol protocol);

/// The protocol in words, such as "ISO 15765-4 (CAN 11/500)".
std::string_view nameOf(BusProtocol protocol);

/// The protocol that the answer to "ATDPN" tells, "6", or "A6" where the adapter has found it by itself; and
/// that to "ATDP": "AUTO, ISO 15765-4 (CAN 11/500)".
/// @return nothing for what is no such answer; unknown for "0" and "A0"
std::optional<BusProtocol> protocolIn(std::string_view answer);

} // namespace zint
