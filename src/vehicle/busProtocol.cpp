#include "vehicle/busProtocol.h"

#include "shared/module1.h"

#include <array>
#include <cstddef>

namespace zint {
namespace {

constexpr std::string_view digits = "0123456789A";

} // namespace

bool isCan(BusProtocol protocol)
{
    return protocol >= BusProtocol::can11At500 && protocol <= BusProtocol::can29At250;
}

bool hasLongIds(BusProtocol protocol)
{
    return protocol == BusProtocol::can29At500 || protocol == BusProtocol::can29At250;
}

std::string_view nameOf(BusProtocol protocol)
{
    static constexpr std::array<std::string_view, digits.size()> names = {
        "unknown",
        "SAE J1850 PWM",
        "SAE J1850 VPW",
        "ISO 9141-2",
        "ISO 14230-4 (KWP 5BAUD)",
        "ISO 14230-4 (KWP FAST)",
        "ISO 15765-4 (CAN 11/500)",
        "ISO 15765-4 (CAN 29/500)",
        "ISO 15765-4 (CAN 11/250)",
        "ISO 15765-4 (CAN 29/250)",
        "SAE J1939 (CAN 29/250)",
    };
    return names.at(digits.find(static_cast<char>(protocol)));
}

std::optional<BusProtocol> protocolIn(std::string_view answer)
{
    answer = trimmed(answer, " \r\n>");
    if (answer.empty())
        return std::nullopt;
    if (answer.size() == 2 && answer.front() == 'A') // found by itself
        answer.remove_prefix(1);
    for (const char digit : digits.substr(1)) {
        if (answer.ends_with(nameOf(static_cast<BusProtocol>(digit))))
            return static_cast<BusProtocol>(digit);
    }
    if (answer.size() != 1 || digits.find(answer.front()) == std::string_view::npos)
        return std::nullopt;
    return static_cast<BusProtocol>(answer.front());
}

} // namespace zint
