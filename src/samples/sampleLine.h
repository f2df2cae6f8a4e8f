#pragma once

#include "catalogue/design.h"
#include "samples/csvExport.h"
#include "samples/sampleStore.h"

#include <string>
#include <string_view>

/// A sample as a line of its own, for programs that read a run while it is on.
namespace zint {

/// The head of the lines that follow: "Time (s),Event,Value,Unit".
std::string csvSampleHead(Decimals decimals);

/// "1.250,Engine speed,812.5,rpm". Values and decimals are those of writeCsv().
std::string csvSampleLine(const DesignEntry& event, double value, SampleTime time, Decimals decimals);

/// The same as a JSON object: {"time":1.250,"code":"010C","name":"Engine speed","value":812.5,"unit":"rpm"}.
/// Words stand in "text", beside the number that stands for them; a value that can't be shown is null.
std::string jsonSampleLine(const DesignEntry& event, double value, SampleTime time);

} // namespace zint
