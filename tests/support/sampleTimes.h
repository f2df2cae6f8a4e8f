#pragma once

#include "samples/sampleStore.h"

#include <cstdint>
#include <vector>

namespace zint {

/// When the samples came, in their order.
inline std::vector<std::int32_t> sampleTimes(const SampleStore& samples)
{
    std::vector<std::int32_t> times;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (!samples[i].isHeader())
            times.push_back(samples[i].time);
    }
    return times;
}

} // namespace zint
