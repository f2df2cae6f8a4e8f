#include "catalogue/pidCatalogue.h"
#include "designer/designFile.h"
#include "designer/loopOffsets.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <sstream>

namespace zint {
namespace {

class SamplesTest : public testing::TestWithParam<const char*> {
protected:
    const std::string path_ = std::string(ZINT_DATA_FOLDER "/") + GetParam();
    const Design design_ = loadDesign(path_);

    std::span<const DesignEntry> events() const
    {
        return std::span(design_.entries).subspan(1, static_cast<std::size_t>(design_.eventCount()));
    }
};

TEST_P(SamplesTest, PollsLiveDataInReadableUnits)
{
    EXPECT_TRUE(design_.isCommitted()) << "all are polled";
    for (const DesignEntry& event : events()) {
        EXPECT_TRUE(event.code.size() == 4 && event.code.starts_with("01")) << event.code;
        EXPECT_GE(event.conversion, 0) << event.code;
        EXPECT_LT(event.conversion, std::ssize(ConversionTable)) << event.code;
    }
}

TEST_P(SamplesTest, SpreadsTheLoadOverThePasses)
{
    constexpr int allFrequencies = 30; // passes after which everything begins again
    std::vector<std::ptrdiff_t> requests;
    for (int pass = 0; pass < allFrequencies; ++pass)
        requests.push_back(
            std::ranges::count_if(events(), [&](const DesignEntry& event) { return isDue(event, pass); }));
    const auto [fewest, most] = std::ranges::minmax(requests);
    EXPECT_LE(most - fewest, 1);
}

TEST_P(SamplesTest, IsWrittenAsItIs)
{
    std::ostringstream written;
    writeDesign(written, design_);
    EXPECT_EQ(written.str(), contents(path_));
}

INSTANTIATE_TEST_SUITE_P(Designs, SamplesTest,
                         testing::Values("all-supported.obc", "engine-health.obc", "fuel-economy.obc"));

} // namespace
} // namespace zint
