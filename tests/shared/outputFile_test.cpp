#include "shared/fileError.h"
#include "shared/outputFile.h"
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

    /// As the menu entry of that name does. @return what the status says, and the path that is remembered
    std::string press(const std::string& entry, const std::string& text)
    {
        const OutputFile::Target target =
            file.choose(entry.starts_with("save") ? OutputFile::Way::replace : OutputFile::Way::append,
                        entry.ends_with("As") ? OutputFile::Name::asked : OutputFile::Name::usual);
        const std::string status = target.path.empty() ? "" : file.write(target, text);
        return status + "|" + values.parmOutput;
    }
};

TEST_F(OutputFileTest, AsksOnceAndThenWritesToTheSameFile)
{
    EXPECT_EQ(press("append", "lost"), "|") << "cancelled";
    EXPECT_EQ(dialogs.asked, "append /start||Text files (*.txt)|*.txt|All files (*.*)|*.*");
    const std::string path = dialogs.chosen = folder.path("out.txt");
    EXPECT_EQ(press("append", "one"), "out.txt saved|" + path) << "a missing file is made";
    EXPECT_EQ(std::exchange(values.parmInitDir, "/other"), folder.path());
    press("append", "two\r\n");
    EXPECT_EQ(contents(path), "one\r\ntwo\r\n\r\n") << "one line end more than the text has";
    press("save", "three");
    EXPECT_EQ(contents(path), "three\r\n");
    EXPECT_EQ(press("saveAs", "lost"), "|" + path) << "cancelled";
    EXPECT_TRUE(dialogs.asked.starts_with("save /other|out.txt|")) << dialogs.asked;
    dialogs.chosen = folder.path("second.txt");
    EXPECT_EQ(press("saveAs", "new"), "second.txt saved|" + folder.path("second.txt"));
    TemporaryFolder::write(path, "");
    dialogs.chosen = path;
    press("appendAs", "four");
    EXPECT_EQ(contents(path), "four\r\n");
}

TEST_F(OutputFileTest, RemembersNoNameThatNothingCouldBeWrittenTo)
{
    values.parmOutput = "/dev/full";
    for (const std::string entry : {"save", "append"}) {
        EXPECT_THROW(press(entry, "text"), FileError);
        dialogs.chosen = folder.path("none/out.txt");
        EXPECT_THROW(press(entry + "As", "text"), FileError);
        EXPECT_EQ(values.parmOutput + values.parmOutputFile + values.parmInitDir, "/dev/full/start");
    }
}

} // namespace
} // namespace zint
