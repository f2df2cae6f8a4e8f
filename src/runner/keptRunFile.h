#pragma once

#include "catalogue/design.h"
#include "samples/sampleStore.h"

#include <chrono>
#include <cstdint>
#include <istream>
#include <optional>
#include <string>

/// The file of a kept run: the design as writeDesign() writes it, a line with the first start in milliseconds
/// since 1970, and a line "event,time,value,milliseconds" for each sample, events from 1, time in whole
/// seconds, in the order in which they came. Files of earlier versions have no milliseconds. What stands
/// behind the samples are marks of KeptRuns.
namespace zint {

struct KeptRunHead {
    Design design;
    std::chrono::system_clock::time_point firstStart;
};

struct KeptSample {
    std::int32_t event = 0; ///< from 0
    SampleTime time;
    double value = 0;
    bool isExact = true; ///< else the file has whole seconds only
};

/// What the file begins with.
std::string headText(const Design& design, std::chrono::system_clock::time_point firstStart);

/// Adds a sample's line to a text.
void appendSample(std::string& text, const KeptSample& sample);

/// @throws FileError when it can't be read
KeptRunHead readHead(std::istream& stream);

/// The sample of the next line; nothing at the end, or when that line is no whole sample of the design.
std::optional<KeptSample> nextSample(std::istream& stream, const Design& design);

} // namespace zint
