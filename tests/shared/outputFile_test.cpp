#include "shared/fileError.h"
#include "shared/outputFile.h"
#include "support/failure.h"
#include "support/scriptedDialogs.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

struct OutputFileTest : testing::Test {
    using Way = OutputFile::Way;
    using Name = OutputFile::Name;

    TemporaryFolder folder;
    ScriptedDialogs dialogs;
    ProgramValues values{.parmInitDir = "/start"};
    OutputFile file{dialogs, values};

    std::string write(Way way, Name name, const std::string& text)
    {
        const OutputFile::Target target = file.choose(way, name);
        return target.path.empty() ? "" : file.write(target, text);
    }

    std::string remembered() const
    {
        return values.parmOutput + "|" + values.parmOutputFile + "|" + values.parmInitDir;
    }
};

TEST_F(OutputFileTest, AsksOnceAndThenWritesToTheSameFile)
{
    EXPECT_EQ(write(Way::append, Name::usual, "lost"), "");
    EXPECT_EQ(dialogs.asked, "append /start||Text files (*.txt)|*.txt|All files (*.*)|*.*");
    EXPECT_EQ(remembered(), "||/start");
    const std::string path = dialogs.chosen = folder.path("out.txt");
    EXPECT_EQ(write(Way::append, Name::usual, "one"), "out.txt saved") << "a missing file is made";
    EXPECT_EQ(write(Way::append, Name::usual, "two\r\n"), "out.txt saved");
    EXPECT_EQ(contents(path), "one\r\ntwo\r\n\r\n") << "one line end more than the text has";
    EXPECT_EQ(write(Way::replace, Name::usual, "three"), "out.txt saved");
    EXPECT_EQ(contents(path), "three\r\n");
    EXPECT_EQ(remembered(), path + "|out.txt|" + folder.path());

    EXPECT_EQ(write(Way::replace, Name::asked, "lost"), "") << "cancelled";
    EXPECT_EQ(dialogs.asked.substr(0, 5), "save ");
    EXPECT_EQ(values.parmOutput, path);
    dialogs.chosen = folder.path("second.txt");
    EXPECT_EQ(write(Way::replace, Name::asked, "new"), "second.txt saved");
    dialogs.chosen = path;
    EXPECT_EQ(write(Way::append, Name::asked, "four"), "out.txt saved");
    EXPECT_EQ(contents(path), "three\r\nfour\r\n");
}

TEST_F(OutputFileTest, RemembersNoNameThatNothingCouldBeWrittenTo)
{
    values.parmOutput = "/dev/full";
    for (const Way way : {Way::replace, Way::append})
        EXPECT_EQ(failureOf<FileError>([&] { write(way, Name::usual, "text"); }),
                  "\"/dev/full\" can't be written: No space left on device");
    values.parmOutputFile = "full";
    for (const Way way : {Way::replace, Way::append}) {
        dialogs.chosen = folder.path("none/out.txt");
        EXPECT_THROW(write(way, Name::asked, "text"), FileError);
        EXPECT_EQ(remembered(), "/dev/full|full|/start");
    }
}

} // namespace
} // namespace zint
