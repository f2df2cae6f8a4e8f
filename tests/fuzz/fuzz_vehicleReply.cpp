// Arbitrary replies: the protocol's digit, the request up to the line's end, then the reply.

#include "fuzz/fuzzInput.h"
#include "vehicle/vehicleReply.h"

#include <algorithm>
#include <set>

void zint::fuzz(std::string_view input)
{
    if (input.empty())
        return;
    const auto protocol = protocolIn(input.substr(0, 1)).value_or(BusProtocol::unknown);
    const auto requestEnd = std::min(input.find('\n'), input.size());
    const auto reply = input.substr(requestEnd);
    const VehicleReply read =
        readVehicleReply(input.substr(1, std::max<std::size_t>(requestEnd, 1) - 1), reply, protocol);
    std::size_t bytes = 0;
    std::set<std::pair<std::string, Bytes>> said;
    for (const UnitMessage& message : read.messages) {
        require(!message.unit.empty(), "somebody says something");
        require(message.bytes.empty() ? message.isIncomplete : (message.bytes[0] & 0x40) != 0,
                "a message begins with the answer to a service");
        require(message.unit[0] == '?' || said.emplace(message.unit, message.bytes).second,
                "nobody repeats a message");
        bytes += message.bytes.size();
    }
    require(bytes <= 1 || 2 * bytes <= reply.size(), "each byte is received once"); // "OK" stands for one
}
