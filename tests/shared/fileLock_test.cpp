#include "shared/fileLock.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

TEST(FileLockTest, OneHolderAtATimeAndNothingIsLeftBehind)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("a.obc");
    FileLock mine;
    EXPECT_TRUE(mine.take(path));
    EXPECT_TRUE(FileLock::isTaken(path));
    EXPECT_FALSE(FileLock().take(path));
    EXPECT_TRUE(mine.take(folder.path("b.obc"))) << "the other one is given back";
    EXPECT_FALSE(FileLock::isTaken(path));
    mine.release();
    TemporaryFolder::write(path + ".lock", ""); // of a program that was killed
    EXPECT_FALSE(FileLock::isTaken(path));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
    EXPECT_TRUE(mine.take(folder.path("none/c.obc"))) << "where nothing can be locked, nobody is locked out";
}

} // namespace
} // namespace zint
