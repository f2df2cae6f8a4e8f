#include "catalogue/conversion.h"
#include "catalogue/designFile.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace zint {
namespace {

TEST(SamplesTest, PollLiveDataEvenlyAndAreWrittenAsTheyAre)
{
    for (const char* name : {"all-supported.obc", "engine-health.obc", "fuel-economy.obc"}) {
        SCOPED_TRACE(name);
        const std::string path = std::string(ZINT_DATA_FOLDER "/") + name;
        const Design design = loadDesign(path);
        EXPECT_TRUE(design.isCommitted()) << "all are polled";
        for (const DesignEntry& event : design.events) {
            EXPECT_TRUE(event.code.size() == 4 && event.code.starts_with("01")) << event.code;
            EXPECT_NE(findConversion(event.conversion), nullptr) << event.code;
        }
        constexpr int allFrequencies = 30; // loops after which everything begins again
        std::vector<std::ptrdiff_t> requests;
        for (int loop = 0; loop < allFrequencies; ++loop)
            requests.push_back(std::ranges::count_if(
                design.events, [&](const DesignEntry& event) { return isDue(event, loop); }));
        const auto [fewest, most] = std::ranges::minmax(requests);
        EXPECT_LE(most - fewest, 1);
        std::ostringstream written;
        writeDesign(written, design);
        EXPECT_EQ(written.str(), contents(path));
    }
}

} // namespace
} // namespace zint
