#include "catalogue/conversion.h"
#include "catalogue/designFile.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <sstream>

namespace zint {
namespace {

TEST(SamplesTest, ArePolledWholeAndWrittenAsTheyAre)
{
    for (const char* name : {"all-supported.obc", "engine-health.obc", "fuel-economy.obc"}) {
        const std::string path = std::string(ZINT_DATA_FOLDER "/") + name;
        const Design design = loadDesign(path);
        EXPECT_TRUE(design.isCommitted()) << name;
        for (const DesignEntry& event : design.events)
            EXPECT_NE(findConversion(event.conversion), nullptr) << event.code;
        std::ostringstream written;
        writeDesign(written, design);
        EXPECT_EQ(written.str(), contents(path)) << name;
    }
}

} // namespace
} // namespace zint
