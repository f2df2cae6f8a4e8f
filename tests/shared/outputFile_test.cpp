#include "shared/fileError.h"
#include "shared/outputFile.h"
#include "support/failure.h"
#include "support/scriptedDialogs.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

struct OutputFileTest : testing::Test {
    TemporaryFolder folder;
    ScriptedDialogs dialogs;
    ProgramValues values{.parmInitDir = "/start"};
    OutputFile file{dialogs, values};

    /// As the menu entry of that name does. @return what the status says
    std::string press(const std::string& entry, const std::string& text)
    {
        const OutputFile::Target target =
            file.choose(entry.starts_with("save") ? OutputFile::Way::replace : OutputFile::Way::append,
                        entry.ends_with("As") ? OutputFile::Name::asked : OutputFile::Name::usual);
        return target.path.empty() ? "" : file.write(target, text);
    }

    std::string remembered() const
    {
        return values.parmOutput + "|" + values.parmOutputFile + "|" + values.parmInitDir;
    }
};

TEST_F(OutputFileTest, AsksOnceAndThenWritesToTheSameFile)
{
    EXPECT_EQ(press("append", "lost") + remembered(), "||/start") << "cancelled";
    EXPECT_EQ(dialogs.asked, "append /start||Text files (*.txt)|*.txt|All files (*.*)|*.*");
    const std::string path = dialogs.chosen = folder.path("out.txt");
    EXPECT_EQ(press("append", "one"), "out.txt saved") << "a missing file is made";
    EXPECT_EQ(press("append", "two\r\n"), "out.txt saved");
    EXPECT_EQ(contents(path), "one\r\ntwo\r\n\r\n") << "one line end more than the text has";
    EXPECT_EQ(press("save", "three"), "out.txt saved");
    EXPECT_EQ(contents(path) + remembered(), "three\r\n" + path + "|out.txt|" + folder.path());
    EXPECT_EQ(press("saveAs", "lost") + values.parmOutput, path) << "cancelled";
    EXPECT_TRUE(dialogs.asked.starts_with("save ")) << dialogs.asked;
    dialogs.chosen = folder.path("second.txt");
    EXPECT_EQ(press("saveAs", "new"), "second.txt saved");
    dialogs.chosen = path;
    EXPECT_EQ(press("appendAs", "four"), "out.txt saved");
    EXPECT_EQ(contents(path), "three\r\nfour\r\n");
}

TEST_F(OutputFileTest, RemembersNoNameThatNothingCouldBeWrittenTo)
{
    values.parmOutput = "/dev/full";
    for (const char* entry : {"save", "append"}) {
        EXPECT_EQ(failureOf<FileError>([&] { press(entry, "text"); }),
                  "\"/dev/full\" can't be written: No space left on device");
        dialogs.chosen = folder.path("none/out.txt");
        EXPECT_THROW(press(std::string(entry) + "As", "text"), FileError);
        EXPECT_EQ(remembered(), "/dev/full||/start");
    }
}

} // namespace
} // namespace zint
