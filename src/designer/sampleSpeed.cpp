#include "designer/sampleSpeed.h"

namespace zint {

std::string speedText(SampleSpeed sampleSpeed)
{
    return sampleSpeed ? std::to_string(sampleSpeed->count()) + "ms" : "Auto";
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
