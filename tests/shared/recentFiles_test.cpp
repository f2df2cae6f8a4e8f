#include "shared/recentFiles.h"
#include "support/memorySettings.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

TEST(RecentFilesTest, KeepsTheLastEightEachOnceAndWhatOtherProgramsAdd)
{
    using Paths = std::vector<std::string>;
    MemorySettings settings;
    RecentFiles recent(settings, "Poll Data");
    RecentFiles others(settings, "Poll Data");
    for (const char* path : {"/1", "/2", "/3", "/4", "/5", "/6", "/7", "/8", "/2", "/9"})
        recent.add(path);
    EXPECT_EQ(recent.paths(), (Paths{"/9", "/2", "/8", "/7", "/6", "/5", "/4", "/3"}));
    others.add("/A\n,;&");
    recent.remove("/8");
    EXPECT_EQ(others.paths(), (Paths{"/A\n,;&", "/9", "/2", "/7", "/6", "/5", "/4"}));
    others.clear();
    EXPECT_EQ(recent.paths(), Paths());
    settings.save("Poll Data", "recent3", "/by hand");
    recent.add("/B");
    EXPECT_EQ(recent.paths(), (Paths{"/B", "/by hand"}));
}

} // namespace
} // namespace zint
