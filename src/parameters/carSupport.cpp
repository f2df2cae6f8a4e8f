#include "parameters/carSupport.h"

#include <utility>

namespace zint {
namespace {

constexpr std::uint8_t bitmapService = 0x01; // live values
constexpr std::size_t bitmapParameters = 0x20;

/// Marks what the bitmap covers that names a parameter: 01 to 20, 21 to 40 and so on.
void cover(CarSupport& car, std::size_t pid)
{
    const std::size_t base = (pid - 1) / bitmapParameters * bitmapParameters;
    for (std::size_t covered = base + 1; covered <= base + bitmapParameters; ++covered) {
        if (covered < car.told.size())
            car.told.set(covered);
    }
}

} // namespace

CarSupport carSupport(const UnitReadings& units, const std::string& source)
{
    CarSupport car{.source = source};
    for (const auto& [name, unit] : units) {
        const auto found = unit.supported.find(bitmapService);
        if (found == unit.supported.end())
            continue;
        car.told.set(0); // it has answered to 00
        car.supported.set(0);
        cover(car, 1);
        for (const std::uint8_t pid : found->second) {
            if (pid == 0)
                continue;
            cover(car, pid);
            car.supported.set(pid);
        }
    }
    return car;
}

void learn(CarSupport& known, CarSupport now)
{
    if (now.told.none())
        return;
    const bool tellsLess = (now.told & ~known.told).none() && now.told != known.told;
    const bool agrees = (known.supported & now.told) == now.supported;
    if (!tellsLess || !agrees)
        known = std::move(now);
}

std::optional<bool> isSupported(const CarSupport& car, std::uint8_t pid)
{
    if (!car.told.test(pid))
        return std::nullopt;
    return car.supported.test(pid);
}

} // namespace zint
