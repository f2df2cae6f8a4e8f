#include "designer/sampleSpeed.h"

#include "catalogue/design.h"

namespace zint {

std::string speedText(int sampleSpeed)
{
    return sampleSpeed == Design::automaticSpeed ? "Auto" : std::to_string(sampleSpeed) + "ms";
}

int roundedSpeed(int position)
{
    constexpr int unit = 4;
    const int below = position / unit;
    const int rest = position % unit;
    const bool up = rest * 2 > unit || (rest * 2 == unit && below % 2 != 0);
    return (below + (up ? 1 : 0)) * unit;
}

} // namespace zint
