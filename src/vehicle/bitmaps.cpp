#include "shared/module1.h"
#include "vehicle/parameterTable.h"
#include "vehicle/serviceAnswers.h"

#include <algorithm>
#include <array>

namespace zint {
void addSupported(std::vector<std::uint8_t>& ids, std::uint8_t base, BytesView bitmap)
{
    for (unsigned bit = 0; bit < 8 * bitmapLength; ++bit) {
        if ((unsigned{bitmap[bit / 8]} >> (7 - bit % 8) & 1U) != 0)
            ids.push_back(static_cast<std::uint8_t>(base + bit + 1));
    }
    std::ranges::sort(ids);
}

std::string supportedText(std::uint8_t base, std::uint32_t bitmap)
{
    const std::array<std::uint8_t, bitmapLength> bytes{
        static_cast<std::uint8_t>(bitmap >> 24), static_cast<std::uint8_t>(bitmap >> 16),
        static_cast<std::uint8_t>(bitmap >> 8), static_cast<std::uint8_t>(bitmap)};
    std::vector<std::uint8_t> ids;
    addSupported(ids, base, bytes);
    std::string text;
    for (const std::uint8_t id : ids)
        text += (text.empty() ? "" : " ") + hexText(id, 2);
    return text.empty() ? "none" : text;
}

void readBitmaps(const ServiceAnswer& answer, std::size_t fillers, UnitReading& reading)
{
    std::vector<std::uint8_t>& ids = reading.supported[answer.service];
    BytesView rest = answer.data;
    for (int last = -1; !rest.empty() && rest.front() > last && asksForBitmap(rest.front());) {
        if (rest.size() < 1 + fillers + bitmapLength) {
            reading.isIncomplete = reading.isIncomplete || last < 0; // behind a bitmap it is padding
            return;
        }
        last = rest.front();
        addSupported(ids, rest.front(), rest.subspan(1 + fillers, bitmapLength));
        rest = rest.subspan(1 + fillers + bitmapLength);
    }
}

} // namespace zint
