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
    ProgramValues values{.parmInitDir = "/start", .isFolderRemembered = false};
    OutputFile file{dialogs, values};

    std::string remembered() const
    {
        return values.parmOutput + "|" + values.parmOutputFile + "|" + values.parmInitDir +
               (values.isFolderRemembered ? "|chosen" : "");
    }
};

TEST_F(OutputFileTest, AsksOnceAndThenWritesToTheSameFile)
{
    EXPECT_EQ(file.append("lost"), "");
    EXPECT_EQ(dialogs.asked, "append /start||Text files (*.txt)|*.txt|All files (*.*)|*.*");
    EXPECT_EQ(remembered(), "||/start");
    const std::string path = dialogs.chosen = folder.path("out.txt");
    EXPECT_EQ(file.append("one"), "out.txt saved") << "a missing file is made";
    EXPECT_EQ(file.append("two\r\n"), "out.txt saved");
    EXPECT_EQ(contents(path), "one\r\ntwo\r\n\r\n") << "one line end more than the text has";
    EXPECT_EQ(file.save("three"), "out.txt saved");
    EXPECT_EQ(contents(path), "three\r\n");
    EXPECT_EQ(remembered(), path + "|out.txt|" + folder.path() + "|chosen");

    EXPECT_EQ(file.saveAs("lost"), "") << "cancelled";
    EXPECT_EQ(dialogs.asked.substr(0, 5), "save ");
    EXPECT_EQ(values.parmOutput, path);
    dialogs.chosen = folder.path("second.txt");
    EXPECT_EQ(file.saveAs("new"), "second.txt saved");
    dialogs.chosen = path;
    EXPECT_EQ(file.appendAs("four"), "out.txt saved");
    EXPECT_EQ(contents(path), "three\r\nfour\r\n");
}

TEST_F(OutputFileTest, RemembersNoNameThatNothingCouldBeWrittenTo)
{
    values.parmOutput = "/dev/full";
    for (const auto write : {&OutputFile::save, &OutputFile::append})
        EXPECT_EQ(failureOf<FileError>([&] { (file.*write)("text"); }),
                  "\"/dev/full\" can't be written: No space left on device");
    values.parmOutputFile = "full";
    for (const auto write : {&OutputFile::saveAs, &OutputFile::appendAs}) {
        dialogs.chosen = folder.path("none/out.txt");
        EXPECT_THROW((file.*write)("text"), FileError);
        EXPECT_EQ(remembered(), "/dev/full|full|/start");
    }
}

} // namespace
} // namespace zint
