#include "sim/protocols.h"

#include <array>

namespace zint {
namespace {

constexpr std::array<ProtocolTraits, highestProtocol + 1> protocols{{
    {.name = "AUTO"},
    {.name = "SAE J1850 PWM"},
    {.name = "SAE J1850 VPW"},
    {.name = "ISO 9141-2",
     .failure = "BUS INIT: ...ERROR",
     .search = "BUS INIT: ",
     .found = "OK",
     .functionalHeader = 0x686AF1,
     .engineHeader = 0x6C10F1,
     .addressBits = 0x00FF00},
    {.name = "ISO 14230-4 (KWP 5BAUD)"},
    {.name = "ISO 14230-4 (KWP FAST)"},
    {.name = "ISO 15765-4 (CAN 11/500)",
     .search = "SEARCHING",
     .functionalHeader = 0x7DF,
     .engineHeader = 0x7E0,
     .addressBits = 0x7FF,
     .mostPids = 6,
     .framing = Framing::isoTp},
    {.name = "ISO 15765-4 (CAN 29/500)"},
    {.name = "ISO 15765-4 (CAN 11/250)"},
    {.name = "ISO 15765-4 (CAN 29/250)"},
    {.name = "SAE J1939 (CAN 29/250)"},
    {.name = "USER1 (CAN 11/125)"},
    {.name = "USER2 (CAN 11/50)"},
}};

} // namespace

const ProtocolTraits& protocolTraits(unsigned number) { return protocols.at(number); }

} // namespace zint
