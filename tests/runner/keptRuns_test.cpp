#include "runner/keptRunFile.h"
#include "runner/keptRuns.h"
#include "samples/debugDump.h"
#include "shared/fileError.h"
#include "shared/module1.h"
#include "support/designOf.h"
#include "support/failure.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <sstream>
#ifdef __unix__
#include <csignal>
#include <sys/resource.h>
#endif

namespace zint {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

struct KeptRunsTest : testing::Test {
    TemporaryFolder folder;
    const std::string runs = folder.path("runs");
    const std::chrono::system_clock::time_point start{std::chrono::milliseconds(1'700'000'000'123)};
    const Design design = designOf({{.code = "010C"}, {.code = "010D"}, {.code = "0105"}});
    const std::string head = headText(design, start);
    const DateText dateText = [this](auto time) { return time == start ? "then" : "never"; };
    KeptRuns kept{folder.path(), dateText};
    SampleStore store;

    KeptRunsTest() { store.reset(design); }

    void begin() { kept.begin(design, store, start); }

    void sample(std::size_t event, std::int32_t value, SampleTime time)
    {
        store.add(event, value, time);
        kept.add(event, value, time);
    }

    /// A file of a former run. @param age in hours
    void leaveFile(const std::string& name, int age, const std::string& lines) const
    {
        fs::create_directories(runs);
        const std::string path = runs + "/" + name + ".run";
        TemporaryFolder::write(path, name + head.substr(head.find('\r')) + lines);
        fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(age));
    }

    /// The content of all files; that of a lock is empty.
    std::string content() const
    {
        std::string found;
        for (const auto& entry : fs::directory_iterator(runs))
            found += contents(entry.path().string());
        return found;
    }

    std::string listed() const
    {
        std::string texts;
        for (const KeptEntry& entry : kept.list())
            texts += entry.text + "\n";
        return texts;
    }
};

TEST_F(KeptRunsTest, WritesEachSampleUntilTheLogIsSaved)
{
    EXPECT_TRUE(head.ends_with("EOP - end of Parms\r\n1700000000123\r\n"));
    kept.add(0, 1, {1});
    begin();
    kept.flush();
    EXPECT_EQ(content(), "") << "an empty run leaves no file";
    sample(0, 40, {0});
    kept.flush();
    EXPECT_EQ(content(), head + "1,0,40,0\r\n");
    kept.setSaved();
    begin();
    sample(1, 2147483647, {2, 999});
    kept.pause();
    KeptRuns other(folder.path(), dateText);
    EXPECT_FALSE(kept.takeCutOff() || other.takeCutOff()) << "a run that is on is not offered";
    EXPECT_TRUE(kept.list().empty() && other.list().empty()) << "not in another program either";
    const std::string all = head + "1,0,40,0\r\n2,2,2147483647,999\r\n";
    EXPECT_EQ(content(), all) << "a paused run goes on, and a sample came after the log";
    kept.setSaved();
    kept.pause();
    EXPECT_EQ(content(), "");
    begin();
    EXPECT_EQ(content(), all) << "a new one begins with all";
    kept.pause();
    EXPECT_EQ(content(), "") << "nothing came after the log";
}

TEST_F(KeptRunsTest, BringsBackALongRunAsItWas)
{
    for (std::int32_t i = 0; i < 6000; ++i)
        store.add(i % 7 == 0 ? 2 : 0, 100 - i, {i / 10}); // event 1 has none
    begin();
    for (std::int32_t i = 0; i < 10000; ++i)
        sample(i % 3 == 0 ? 0 : 1, i, {600 + i, static_cast<std::uint16_t>(i % 1000)});
    kept.leave();
    ASSERT_EQ(listed(), "then   Car (16000 samples in 2:56:39)\n");
    const KeptRun run = KeptRuns::load(kept.list().at(0));
    EXPECT_EQ(run.firstStart, start);
    EXPECT_EQ(headText(run.design, start), head);
    std::ostringstream before, after;
    writeDebugDump(before, store);
    writeDebugDump(after, run.samples);
    EXPECT_TRUE(after.str() == before.str());
    EXPECT_EQ(run.samples[16002].seconds(), 10599.999) << "to the millisecond";
}

TEST_F(KeptRunsTest, TellsOnceOfEachCrash)
{
    leaveFile("left", 9, "1,1,1\r\nleft\r\n");
    leaveFile("empty", 8, "");
    EXPECT_FALSE(kept.takeCutOff()) << "the one was left, the other has no sample";
    leaveFile("cut", 10, "1,1,1\r\n1,99,12"); // in the middle of a line
    EXPECT_TRUE(kept.takeCutOff());
    EXPECT_FALSE(kept.takeCutOff());
    EXPECT_EQ(listed(), "then   left (1 sample in 0:01)\nthen   cut (1 sample in 0:01, cut off)\n")
        << "the time of a file stays";
}

TEST_F(KeptRunsTest, ReadsWhatIsWholeOfADamagedFile)
{
    const KeptEntry entry{.path = runs + "/damaged.run", .text = ""};
    for (const std::string& end : {"1,2,77"s, "1,2\r\n1,9,9\r\n"s, "4,2,3\r\n"s, "1,2,nan\r\n"s,
                                   "1,2,5.5\r\n"s, std::string(1'000'000, '1')}) {
        leaveFile("damaged", 0, "1,2,5\n2,2,6\r\n" + end);
        const SampleStore samples = KeptRuns::load(entry).samples;
        EXPECT_EQ(samples.size(), 4U) << end.substr(0, 20);
        EXPECT_EQ(samples[1].seconds() + samples[3].seconds(), 4.5) << "spread, where the milliseconds lack";
        EXPECT_EQ(listed(), "then   damaged (2 samples in 0:02, cut off)\n");
    }
    TemporaryFolder::write(entry.path, "Car\r\n|-1\r\nEOP - end of Parms\r\n12 soon\r\n");
    EXPECT_EQ(failureOf<FileError>([&] { KeptRuns::load(entry); }),
              "\"" + entry.path + "\" can't be read: the time of its start is missing");
    EXPECT_EQ(listed(), "");
}

TEST_F(KeptRunsTest, KeepsTheLastTenOfSoMuchAndThoseThatWereCutOffLonger)
{
    leaveFile("crash", 30, "1,1,1\r\n");
    for (int age = 12; age > 0; --age)
        leaveFile("t" + std::to_string(age), age, "1,1,1\r\nleft\r\n");
    kept.leave();
    EXPECT_EQ(kept.list().size(), 10U);
    EXPECT_TRUE(listed().starts_with("then   t1 (1 sample in 0:01)\n"));
    EXPECT_TRUE(listed().ends_with("then   crash (1 sample in 0:01, cut off)\n"));
    for (const auto& [mostBytes, files] : {std::pair(3 * head.size() + 100, 3U), {head.size() / 2, 1U}}) {
        KeptRuns limited(folder.path(), dateText, mostBytes);
        limited.leave();
        EXPECT_EQ(limited.list().size(), files) << "the newest stays whatever its size";
    }
}

TEST_F(KeptRunsTest, SaysWhenNothingCanBeKept)
{
    TemporaryFolder::write(runs, "no folder");
    begin();
    const std::string shown = utf8Text(utf8Path(runs).make_preferred());
    EXPECT_TRUE(kept.failure().starts_with("The folder \"" + shown + "\" can't be made: "));
    EXPECT_FALSE(kept.takeCutOff());
    fs::remove(runs);
    begin();
    EXPECT_EQ(kept.failure(), "");
}

#ifdef __unix__
TEST_F(KeptRunsTest, StopsWhenTheDiskIsFull)
{
    begin();
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit room{.rlim_cur = head.size() + 1001, .rlim_max = before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &room);
    for (std::int32_t i = 0; i < 10000; ++i)
        sample(1, i, {2});
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_TRUE(kept.failure().ends_with(".run\" can't be written: File too large")) << "while samples came";
    EXPECT_EQ(content().size(), room.rlim_cur) << "what has gone out stays";
    begin();
    kept.leave();
    EXPECT_EQ(listed(), "then   Car (10000 samples in 0:02)\n") << "in place of the one that failed";
}
#endif

} // namespace
} // namespace zint
