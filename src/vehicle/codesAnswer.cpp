#include "vehicle/serviceAnswers.h"
#include "vehicle/troubleCode.h"

#include <algorithm>

namespace zint {
namespace {

CodeKind kindOf(std::uint8_t service)
{
    if (service == 0x07)
        return CodeKind::pending;
    return service == 0x0A ? CodeKind::permanent : CodeKind::stored;
}

/// Whether the number of codes stands in front of them: on CAN. Messages of the older buses have room for
/// three codes instead, and no number.
bool startsWithCount(const ServiceAnswer& answer)
{
    if (answer.bus != BusKind::unknown)
        return answer.bus == BusKind::can;
    return !answer.data.empty() && answer.data.size() == 1 + 2 * std::size_t{answer.data.front()};
}

} // namespace

void readCodes(const ServiceAnswer& answer, UnitReading& reading)
{
    BytesView pairs = answer.data;
    if (startsWithCount(answer)) {
        const std::size_t length = pairs.empty() ? 1 : 2 * std::size_t{pairs.front()};
        pairs = pairs.subspan(pairs.empty() ? 0 : 1);
        reading.isIncomplete = reading.isIncomplete || pairs.size() < length;
        pairs = pairs.first(std::min(pairs.size(), length));
    }
    if (pairs.empty() && reading.isIncomplete)
        return; // it has not said that it has none
    reading.isIncomplete = reading.isIncomplete || pairs.size() % 2 != 0;
    std::vector<std::string>& codes = reading.codes[kindOf(answer.service)];
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
        if (pairs[i] != 0 || pairs[i + 1] != 0) // 0000 fills the place of a code
            codes.push_back(troubleCode(pairs[i], pairs[i + 1]));
    }
}

} // namespace zint
