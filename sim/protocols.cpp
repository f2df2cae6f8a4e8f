#include "sim/protocols.h"

#include <algorithm>
#include <array>

namespace zint {
namespace {

constexpr std::uint32_t middleByte = 0x00FF00; // of a header of three bytes: the receiver

constexpr ProtocolTraits can11(std::string_view name, std::string_view option)
{
    return {.name = name,
            .option = option,
            .search = "SEARCHING",
            .functionalHeader = 0x7DF,
            .addressBits = 0x7FF,
            .mostPids = 6,
            .framing = Framing::isoTp,
            .headerForm = HeaderForm::id11,
            .receives = {.identifier = 0x7E8, .mask = 0x7F8}};
}

/// Headers are set without their first byte, the priority 18.
constexpr ProtocolTraits can29(std::string_view name, std::string_view option)
{
    return {.name = name,
            .option = option,
            .search = "SEARCHING",
            .functionalHeader = 0xDB33F1,
            .unitHeader = 0xDA00F1,
            .addressBits = 0xFFFF00,
            .mostPids = 6,
            .framing = Framing::isoTp,
            .headerForm = HeaderForm::id29,
            .replyHeader = 0x18DAF100,
            .receives = {.identifier = 0x18DAF100, .mask = 0x1FFFFF00}};
}

constexpr std::array<ProtocolTraits, highestProtocol + 1> protocols{{
    {.name = "AUTO"},
    {.name = "SAE J1850 PWM",
     .option = "pwm",
     .search = "SEARCHING",
     .functionalHeader = 0x616AF1,
     .unitHeader = 0xC400F1,
     .addressBits = middleByte,
     .replyHeader = 0x416B,
     .check = CheckByte::crc},
    {.name = "SAE J1850 VPW",
     .option = "vpw",
     .search = "SEARCHING",
     .functionalHeader = 0x686AF1,
     .unitHeader = 0x6C00F1,
     .addressBits = middleByte,
     .replyHeader = 0x486B,
     .check = CheckByte::crc},
    {.name = "ISO 9141-2",
     .option = "iso9141",
     .failure = "BUS INIT: ...ERROR",
     .search = "BUS INIT: ",
     .found = "OK",
     .functionalHeader = 0x686AF1,
     .unitHeader = 0x6C00F1,
     .addressBits = middleByte,
     .replyHeader = 0x486B,
     .check = CheckByte::sum},
    {.name = "ISO 14230-4 (KWP 5BAUD)",
     .option = "kwp-slow",
     .failure = "BUS INIT: ...ERROR",
     .search = "BUS INIT: ",
     .found = "OK",
     .functionalHeader = 0xC233F1,
     .unitHeader = 0x8200F1,
     .addressBits = middleByte,
     .headerForm = HeaderForm::withLength,
     .replyHeader = 0x80F1,
     .check = CheckByte::sum,
     .refusesUnsupported = true},
    {.name = "ISO 14230-4 (KWP FAST)",
     .option = "kwp-fast",
     .failure = "BUS INIT: ERROR",
     .search = "BUS INIT: ",
     .searchDots = 0,
     .found = "OK",
     .functionalHeader = 0xC233F1,
     .unitHeader = 0x8200F1,
     .addressBits = middleByte,
     .headerForm = HeaderForm::withLength,
     .replyHeader = 0x80F1,
     .check = CheckByte::sum,
     .refusesUnsupported = true},
    can11("ISO 15765-4 (CAN 11/500)", "can"),
    can29("ISO 15765-4 (CAN 29/500)", "can29"),
    can11("ISO 15765-4 (CAN 11/250)", "can250"),
    can29("ISO 15765-4 (CAN 29/250)", "can29-250"),
    {.name = "SAE J1939 (CAN 29/250)"},
    {.name = "USER1 (CAN 11/125)"},
    {.name = "USER2 (CAN 11/50)"},
}};

} // namespace

const ProtocolTraits& protocolTraits(unsigned number) { return protocols.at(number); }

std::optional<VehicleProtocol> vehicleProtocol(std::string_view option)
{
    const auto* const found = std::ranges::find(protocols, option, &ProtocolTraits::option);
    if (option.empty() || found == protocols.end())
        return {};
    return static_cast<VehicleProtocol>(found - protocols.begin());
}

} // namespace zint
