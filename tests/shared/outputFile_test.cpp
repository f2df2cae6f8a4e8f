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
    ProgramValues values;
    OutputFile file{dialogs, values};
};

TEST_F(OutputFileTest, AsksOnceAndThenWritesToTheSameFile)
{
    values.parmInitDir = "/start";
    EXPECT_EQ(file.save("lost"), "");
    EXPECT_EQ(file.append("lost"), "");
    EXPECT_EQ(dialogs.asked, "save /start||Text files (*.txt)|*.txt|All files (*.*)|*.*");
    EXPECT_EQ(values.parmInitDir, "/start");

    const std::string path = dialogs.chosen = folder.path("out.txt");
    EXPECT_EQ(file.append("one"), "out.txt saved") << "a missing file is made";
    EXPECT_EQ(contents(path), "one\r\n");
    TemporaryFolder::write(path, "");
    EXPECT_EQ(file.append("one"), "out.txt saved");
    EXPECT_EQ(values.parmOutput, path);
    EXPECT_EQ(values.parmOutputFile, "out.txt");
    EXPECT_EQ(values.parmInitDir, folder.path());
    dialogs.asked.clear();
    EXPECT_EQ(file.append("two\r\n"), "out.txt saved");
    EXPECT_EQ(contents(path), "one\r\ntwo\r\n\r\n") << "one line end more than the text has";
    EXPECT_EQ(file.save("three"), "out.txt saved");
    EXPECT_EQ(contents(path), "three\r\n");
    EXPECT_EQ(dialogs.asked, "");
}

TEST_F(OutputFileTest, ACancelledDialogLeavesTheFileAndItsName)
{
    const std::string first = values.parmOutput = folder.path("first.txt");
    values.parmOutputFile = "first.txt";
    TemporaryFolder::write(first, "old\r\n");
    EXPECT_EQ(file.saveAs("lost"), "");
    EXPECT_EQ(file.appendAs("lost"), "");
    EXPECT_EQ(values.parmOutput, first);
    EXPECT_EQ(values.parmOutputFile, "first.txt");
    EXPECT_EQ(contents(first), "old\r\n");

    const std::string second = dialogs.chosen = folder.path("second.txt");
    EXPECT_EQ(file.saveAs("new"), "second.txt saved");
    EXPECT_EQ(contents(second), "new\r\n");
    dialogs.chosen = first;
    EXPECT_EQ(file.appendAs("new"), "first.txt saved");
    EXPECT_EQ(contents(first), "old\r\nnew\r\n");
    EXPECT_EQ(values.parmOutput, first);
}

TEST_F(OutputFileTest, TellsWhyItCannotWrite)
{
    values.parmOutput = "/dev/full";
    for (const auto write : {&OutputFile::save, &OutputFile::append})
        EXPECT_EQ(failureOf<FileError>([&] { (file.*write)("text"); }),
                  "\"/dev/full\" can't be written: No space left on device");
    values.parmOutput = folder.path("none/out.txt");
    EXPECT_THROW(file.append("text"), FileError);
}

} // namespace
} // namespace zint
