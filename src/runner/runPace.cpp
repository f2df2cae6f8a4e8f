#include "runner/runPace.h"

#include "catalogue/requestTime.h"
#include "shared/module1.h"

#include <cmath>

namespace zint {

RunPace::RunPace(const Design& design, int bitsPerSecond)
    : design_(design), requestSeconds_(requestSeconds(design.sampleSpeed, bitsPerSecond))
{
}

void RunPace::measure(Time last, std::int64_t replies)
{
    const std::chrono::duration<double> spent = last - began_;
    replies -= repliesBefore_;
    if (replies < 1 || spent.count() <= 0)
        return;
    requestSeconds_ = spent.count() / static_cast<double>(replies);
    isMeasured_ = true;
}

std::optional<double> RunPace::secondsLeft(Turn last, std::int64_t endLoop) const
{
    if (!isMeasured_)
        return std::nullopt;
    return static_cast<double>(1 + requestsBetween(design_, last, endLoop)) * requestSeconds_;
}

double RunPace::secondsOf(std::int64_t loops) const
{
    return static_cast<double>(requestsBetween(design_, beforeAll, loops)) * requestSeconds_;
}

std::string RunPace::lengthText(std::int64_t loops) const
{
    const double seconds = secondsOf(loops);
    if (seconds <= 0)
        return {};
    const std::string text = "about " + durationText(std::llround(seconds)) + " with this design";
    return isMeasured_ ? text + " (" + measuredText(loops) + ")" : "at most " + text;
}

std::string RunPace::measuredText(std::int64_t loops) const
{
    constexpr std::int64_t hundredths = 100;
    if (!isMeasured_)
        return {};
    const double perLoop = secondsOf(loops) / static_cast<double>(loops);
    return rateText(std::llround(perLoop * hundredths), hundredths) + " s per loop";
}

} // namespace zint
