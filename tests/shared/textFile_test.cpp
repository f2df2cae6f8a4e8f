#include "shared/module1.h"
#include "shared/textFile.h"
#include "shared/utf8.h"
#include "support/failure.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <sstream>

namespace zint {
namespace {

#ifdef _WIN32
const std::string nothing = "NUL";
#else
const std::string nothing = "/dev/null";
#endif

struct TextFileTest : testing::Test {
    TemporaryFolder folder;
    std::string path = folder.path("f\xC3\xA9.obc");

    std::ptrdiff_t fileCount() const
    {
        return std::distance(std::filesystem::directory_iterator(folder.path()), {});
    }
};

void replace(const std::string& path, const std::string& text)
{
    replaceFile(path, [&text](std::ostream& stream) { stream << text; });
}

TEST_F(TextFileTest, ReplacesTheWholeFileOrNothing)
{
    replace(path, "old");
    std::filesystem::permissions(utf8Path(path), std::filesystem::perms::owner_all);
    EXPECT_ANY_THROW(replaceFile(path, [](std::ostream&) { throw std::runtime_error("in the middle"); }));
    EXPECT_THROW(replaceFile(path, [](auto& stream) { stream.setstate(std::ios::badbit); }), FileError);
    EXPECT_EQ(contents(path), "old");
    replace(path, "new");
    EXPECT_EQ(contents(path), "new");
    EXPECT_EQ(fileCount(), 1) << "nothing is left behind";
#ifdef __unix__
    EXPECT_EQ(std::filesystem::status(utf8Path(path)).permissions(), std::filesystem::perms::owner_all);
    std::filesystem::create_symlink(utf8Path(path), folder.path("link"));
    replace(folder.path("link"), "through the link");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link")));
    EXPECT_EQ(contents(path), "through the link");
#endif
}

TEST_F(TextFileTest, TakesNoNameThatSomethingHas)
{
    replace(path, "whole");
    const std::string taken = folder.path("taken.txt");
    replace(taken, "");
    publishFile(path, taken);
    EXPECT_EQ(contents(taken), "whole") << "in place of an empty file";
    replace(path, "later");
    EXPECT_THROW(publishFile(path, taken), FileError);
    EXPECT_EQ(contents(taken) + contents(path), "wholelater");
}

TEST_F(TextFileTest, FailuresNameTheFileAndTheReason)
{
    const auto failure = [](const std::string& target) {
        return failureOf<FileError>([&] { replace(target, std::string(100000, 'x')); });
    };
#ifdef __unix__
    EXPECT_EQ(failure("/dev/full"), "\"/dev/full\" can't be written: No space left on device");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full")) << "a device is not replaced by a file";
#else
    const std::ofstream others(utf8Path(path));
    EXPECT_EQ(failure(path), "\"" + path + "\" can't be written: another program has it open");
    EXPECT_EQ(fileCount(), 1) << "nothing is left behind";
#endif
    EXPECT_EQ(failure(folder.path()), "\"" + folder.path() + "\" can't be written: it is a folder");
    EXPECT_NE(failure(folder.path() + "/none/x").find("No such file"), std::string::npos);
    for (const std::string& none : {folder.path("none"), folder.path()})
        EXPECT_THROW(readFile(none, [](std::istream&) {}), FileError);
}

TEST_F(TextFileTest, TellsBeforehandWhetherAFileCanBeWritten)
{
    requireWritable(path);
    EXPECT_EQ(fileCount(), 0) << "nothing is left behind";
    replace(path, "old");
    const auto written = std::filesystem::last_write_time(utf8Path(path));
    requireWritable(path);
    EXPECT_EQ(std::filesystem::last_write_time(utf8Path(path)), written);
    EXPECT_EQ(fileCount(), 1);
    requireWritable(nothing);
    for (const std::string& refused : {folder.path(), folder.path("none/x"), nothing + "/x"})
        EXPECT_THROW(requireWritable(refused), FileError) << refused;
}

TEST_F(TextFileTest, ReadsLinesOfAnyEndAndEitherCharacterSet)
{
    std::istringstream stream(std::string("a\r\nb\n\r\xE9\x80\r\n\xC3\xA9z\r\0", 15));
    LineReader lines(stream);
    for (const char* expected : {"a", "b", "", "\xC3\xA9\xE2\x82\xAC", "\xC3\xA9z"})
        EXPECT_EQ(lines.next(), expected);
    EXPECT_THROW(lines.next(), FileError) << "no text has the character 0";
    std::istringstream whole("end");
    LineReader last(whole);
    EXPECT_EQ(last.next(), "end");
    EXPECT_EQ(last.next(), std::nullopt);
    EXPECT_EQ(toUtf8("\xED\xA0\x80"), "\xC3\xAD\xC2\xA0\xE2\x82\xAC") << "half of a pair is no UTF-8";
    EXPECT_EQ(toUtf8("\xF0\x9F\x9A\x97"), "\xF0\x9F\x9A\x97");
    EXPECT_EQ(toUtf8("\xC3"), "\xC3\x83") << "a character that is cut off";
}

} // namespace
} // namespace zint
