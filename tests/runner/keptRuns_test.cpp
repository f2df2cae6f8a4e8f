#include "runner/debugDump.h"
#include "runner/keptRunFile.h"
#include "runner/keptRuns.h"
#include "shared/fileError.h"
#include "support/designOf.h"
#include "support/failure.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#ifdef __unix__
#include <csignal>
#include <sys/resource.h>
#endif

namespace zint {
namespace {

namespace fs = std::filesystem;

std::string dumpOf(const SampleStore& samples)
{
    std::ostringstream text;
    writeDebugDump(text, samples);
    return text.str();
}

struct KeptRunsTest : testing::Test {
    TemporaryFolder folder;
    const std::string runs = folder.path("runs");
    const std::chrono::system_clock::time_point start{std::chrono::milliseconds(1'700'000'000'123)};
    std::optional<KeptRuns> kept{make()};
    const Design design = designOf({{.code = "010C"}, {.code = "010D"}, {.code = "0105"}});
    const std::string head = headText(design, start);
    SampleStore store;

    KeptRunsTest() { store.reset(design); }

    KeptRuns make(std::uintmax_t mostBytes = 1'000'000) const
    {
        const auto dateText = [start = start](auto time) { return time == start ? "then" : "never"; };
        return {folder.path(), dateText, mostBytes};
    }

    void begin() { kept->begin(design, store, start); }

    void sample(std::size_t event, std::int32_t value, std::int32_t time)
    {
        store.add(event, value, time);
        kept->add(event, value, time);
    }

    /// A file of a former run. @param age in hours
    void leaveFile(const std::string& name, int age, const std::string& lines) const
    {
        fs::create_directories(utf8Path(runs));
        const auto path = utf8Path(runs + "/" + name + ".run");
        TemporaryFolder::write(utf8Text(path), name + head.substr(head.find('\r')) + lines);
        fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(age));
    }

    /// The content of each, without the locks of those that are written.
    std::string content() const
    {
        std::string found;
        std::error_code missing;
        for (const auto& entry : fs::directory_iterator(utf8Path(runs), missing))
            found += entry.path().extension() == ".run" ? contents(utf8Text(entry.path())) : "";
        return found;
    }

    std::string listed() const
    {
        std::string texts;
        for (const KeptEntry& entry : kept->list())
            texts += entry.text + "\n";
        return texts;
    }
};

TEST_F(KeptRunsTest, WritesEachSampleUntilTheLogIsSaved)
{
    EXPECT_TRUE(head.ends_with("EOP - end of Parms\r\n1700000000123\r\n"));
    kept->add(0, 1, 1);
    begin();
    kept->flush();
    EXPECT_EQ(content(), "") << "an empty run leaves no file";
    sample(0, 40, 0);
    sample(2, -7, 1);
    kept->flush();
    EXPECT_EQ(content(), head + "1,0,40\r\n3,1,-7\r\n");
    begin();
    sample(1, 2147483647, 2);
    kept->pause();
    EXPECT_FALSE(kept->takeCutOff() || make().takeCutOff()) << "a run that is on is not offered";
    EXPECT_TRUE(kept->list().empty() && make().list().empty()) << "not in another program either";
    const std::string all = head + "1,0,40\r\n3,1,-7\r\n2,2,2147483647\r\n";
    EXPECT_EQ(content(), all) << "a paused run goes on";
    kept->setSaved();
    kept->pause();
    EXPECT_EQ(content(), "");
    begin();
    EXPECT_EQ(content(), all) << "a new one begins with all";
    kept->pause();
    EXPECT_EQ(content(), "") << "nothing came after the log";
}

TEST_F(KeptRunsTest, BringsBackALongRunAsItWas)
{
    for (std::int32_t i = 0; i < 6000; ++i)
        store.add(i % 7 == 0 ? 2 : 0, 100 - i, i / 10); // event 1 has none
    begin();
    for (std::int32_t i = 0; i < 10000; ++i)
        sample(i % 3 == 0 ? 0 : 1, i, 600 + i);
    kept->leave();
    ASSERT_EQ(listed(), "then   Car (16000 samples in 2:56:39)\n");
    const KeptRun run = KeptRuns::load(kept->list().at(0));
    EXPECT_EQ(run.firstStart, start);
    EXPECT_EQ(headText(run.design, start), head);
    EXPECT_TRUE(dumpOf(run.samples) == dumpOf(store));
}

TEST_F(KeptRunsTest, TellsOnceOfEachCrash)
{
    leaveFile("left", 9, "1,1,1\r\nleft\r\n");
    leaveFile("empty", 8, "");
    EXPECT_FALSE(kept->takeCutOff()) << "the one was left, the other has no sample";
    leaveFile("cut", 10, "1,1,1\r\n1,99,12"); // in the middle of a line
    EXPECT_TRUE(kept->takeCutOff());
    EXPECT_FALSE(kept->takeCutOff());
    EXPECT_EQ(listed(), "then   left (1 sample in 0:01)\nthen   cut (1 sample in 0:01, cut off)\n")
        << "the time of a file stays";
}

TEST_F(KeptRunsTest, ReadsWhatIsWholeOfADamagedFile)
{
    const std::string path = runs + "/damaged.run";
    const auto loaded = [&](const std::string& lines) {
        leaveFile("damaged", 0, lines);
        return dumpOf(KeptRuns::load({path, ""}).samples);
    };
    const std::string two = "-1,1,0\r\n0,5,1\r\n-1,2,0\r\n0,6,1\r\n";
    EXPECT_EQ(loaded("1,1,5\n2,1,6\n"), two);
    for (const std::string& end : {std::string("1,2,77"), std::string("1,2\r\n1,9,9\r\n"),
                                   std::string("4,2,3\r\n1,9,9\r\n"), std::string(1'000'000, '1')})
        EXPECT_EQ(loaded("1,1,5\r\n2,1,6\r\n" + end), two) << end.substr(0, 20);
    TemporaryFolder::write(path, "Car\r\n|-1\r\nEOP - end of Parms\r\nsoon\r\n");
    EXPECT_EQ(failureOf<FileError>([&] {
                  KeptRuns::load({path, ""});
              }),
              "\"" + path + "\" can't be read: the time of its start is missing");
    EXPECT_EQ(listed(), "");
}

TEST_F(KeptRunsTest, KeepsTheLastTenOfSoMuchAndThoseThatWereCutOffLonger)
{
    leaveFile("crash", 30, "1,1,1\r\n");
    for (int age = 12; age > 0; --age)
        leaveFile("t" + std::to_string(age), age, "1,1,1\r\nleft\r\n");
    kept->leave();
    const auto count = [this] { return kept->list().size(); };
    EXPECT_EQ(count(), 10U);
    EXPECT_TRUE(listed().starts_with("then   t1 (1 sample in 0:01)\n"));
    EXPECT_TRUE(listed().ends_with("then   crash (1 sample in 0:01, cut off)\n"));
    for (const auto& [mostBytes, files] : {std::pair(3 * head.size() + 100, 3U), {head.size() / 2, 1U}}) {
        kept.emplace(make(mostBytes));
        kept->leave();
        EXPECT_EQ(count(), files) << "the newest stays whatever its size";
    }
}

TEST_F(KeptRunsTest, SaysWhenNothingCanBeKept)
{
    TemporaryFolder::write(runs, "no folder");
    begin();
    EXPECT_TRUE(kept->failure().starts_with("The folder \"" + runs + "\" can't be made: "));
    EXPECT_FALSE(kept->takeCutOff());
    fs::remove(utf8Path(runs));
    begin();
    EXPECT_EQ(kept->failure(), "");
    fs::remove(utf8Path(runs)); // while it is on
    sample(0, 1, 1);
    kept->flush();
    EXPECT_NE(kept->failure().find(".run\" can't be written: "), std::string::npos) << kept->failure();
    begin();
    EXPECT_EQ(content(), head + "1,1,1\r\n") << "it begins anew";
}

#ifdef __unix__
TEST_F(KeptRunsTest, StopsWhenTheDiskIsFull)
{
    begin();
    const std::size_t room = head.size() + 1001;
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit limit{.rlim_cur = room, .rlim_max = before.rlim_max};
    auto* const handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &limit);
    for (std::int32_t i = 0; i < 10000; ++i)
        sample(1, i, 2);
    const std::string why = kept->failure();
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_TRUE(why.ends_with(".run\" can't be written: File too large")) << "while samples came: " << why;
    EXPECT_EQ(content().size(), room) << "what has gone out stays";
    begin();
    kept->leave();
    EXPECT_EQ(listed(), "then   Car (10000 samples in 0:02)\n") << "in place of the one that failed";
}
#endif

} // namespace
} // namespace zint
