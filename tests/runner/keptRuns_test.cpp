#include "catalogue/designFile.h"
#include "runner/debugDump.h"
#include "runner/keptRuns.h"
#include "runner/runFiles.h"
#include "shared/fileError.h"
#include "support/failure.h"
#include "support/scriptedDialogs.h"
#include "support/scriptedPrompts.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <optional>
#include <sstream>
#ifdef __unix__
#include <csignal>
#include <sys/resource.h>
#endif

namespace zint {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using std::chrono::system_clock;

std::string dateText(system_clock::time_point time)
{
    return std::to_string(std::chrono::duration_cast<milliseconds>(time.time_since_epoch()).count());
}

std::string dumpOf(const SampleStore& samples)
{
    std::ostringstream text;
    writeDebugDump(text, samples);
    return text.str();
}

class KeptRunsTest : public testing::Test {
protected:
    TemporaryFolder folder;
    const std::string runs = folder.path("runs");
    const system_clock::time_point start{milliseconds(1'700'000'000'123)};
    std::optional<KeptRuns> kept;
    Design design;
    SampleStore store;

    KeptRunsTest()
    {
        kept.emplace(runs, dateText);
        design.title = "drive";
        design.events.assign(3, {.code = "010C", .description = "RPM", .conversion = 20, .frequency = 1});
        store.reset(design);
    }

    std::string head() const
    {
        std::ostringstream text;
        writeDesign(text, design);
        return text.str() + "1700000000123\r\n";
    }

    void begin() { kept->begin(design, store, start); }

    void sample(std::size_t event, std::int32_t value, std::int32_t time)
    {
        store.add(event, value, time);
        kept->add(event, value, time);
    }

    /// The program starts again. A sample that was not flushed is lost with a crash.
    void restart() { kept.emplace(runs, dateText); }

    /// Without the locks of those that are written.
    std::vector<std::string> files() const
    {
        std::vector<std::string> paths;
        std::error_code missing;
        for (const auto& entry : fs::directory_iterator(utf8Path(runs), missing)) {
            if (entry.path().extension() == ".run")
                paths.push_back(utf8Text(entry.path()));
        }
        return paths;
    }

    std::string content() const
    {
        EXPECT_EQ(files().size(), 1);
        return contents(files().at(0));
    }

    std::vector<std::string> texts() const
    {
        std::vector<std::string> texts;
        for (const KeptEntry& entry : kept->list())
            texts.push_back(entry.text);
        return texts;
    }

    /// Keeps a run of one sample, up to a crash or properly left. @param age of its file in hours
    void keepRun(const std::string& title, int age, bool isLeft = true)
    {
        const auto before = files();
        design.title = title;
        begin();
        kept->add(0, 1, 1);
        kept->flush();
        const auto time = fs::file_time_type::clock::now() - std::chrono::hours(age);
        for (const std::string& path : files()) {
            if (std::ranges::find(before, path) != before.end())
                continue;
            if (!isLeft) // in the middle of a line
                std::ofstream(utf8Path(path), std::ios::app) << "1,99,12";
            fs::last_write_time(utf8Path(path), time);
        }
        isLeft ? kept->leave() : restart();
    }

    /// The samples, in their order, of a file with this content.
    std::string loaded(const std::string& bytes)
    {
        folder.write(folder.path("some.run"), bytes);
        const KeptRun run = KeptRuns::load({folder.path("some.run"), ""});
        std::string text;
        for (std::size_t i = 0; i < run.samples.size(); ++i) {
            const SampleRecord& record = run.samples[i];
            if (!record.isHeader())
                text += std::to_string(record.time) + "=" + std::to_string(record.value) + " ";
        }
        return text;
    }
};

TEST_F(KeptRunsTest, WritesEachSampleUntilTheLogIsSaved)
{
    kept->add(0, 1, 1);
    begin();
    kept->flush();
    EXPECT_TRUE(files().empty()) << "an empty run leaves no file";

    sample(0, 40, 0);
    sample(2, -7, 1);
    kept->flush();
    EXPECT_EQ(content(), head() + "1,0,40\r\n3,1,-7\r\n");
    begin();
    sample(1, 2147483647, 2);
    kept->flush();
    const std::string all = head() + "1,0,40\r\n3,1,-7\r\n2,2,2147483647\r\n";
    EXPECT_EQ(content(), all) << "a paused run goes on";

    kept->setSaved();
    kept->pause();
    EXPECT_TRUE(files().empty());
    begin();
    EXPECT_EQ(content(), all) << "a new one begins with all";
}

TEST_F(KeptRunsTest, ARunThatIsOnIsNotOffered)
{
    begin();
    sample(0, 40, 0);
    kept->flush();
    KeptRuns other(runs, dateText); // of another program
    EXPECT_FALSE(kept->takeCutOff() || other.takeCutOff());
    EXPECT_TRUE(kept->list().empty() && other.list().empty());
}

TEST_F(KeptRunsTest, BringsBackALongRunAsItWas)
{
    for (std::int32_t i = 0; i < 6000; ++i)
        store.add(i % 7 == 0 ? 2 : 0, 100 - i, i / 10); // event 1 has none
    begin();
    for (std::int32_t i = 0; i < 10000; ++i)
        sample(i % 3 == 0 ? 0 : 1, i, 600 + i);
    kept->leave();
    ASSERT_EQ(texts(), std::vector<std::string>{"1700000000123   drive (16000 samples in 2:56:39)"});
    const KeptRun run = KeptRuns::load(kept->list().at(0));
    EXPECT_EQ(run.firstStart, start);
    EXPECT_EQ(run.design.title, "drive");
    EXPECT_EQ(run.design.events[2].code, "010C");
    EXPECT_TRUE(dumpOf(run.samples) == dumpOf(store));
}

TEST_F(KeptRunsTest, ARecoveredRunBecomesALogUnlessItsUserStopsThat)
{
    for (std::int32_t i = 0; i < 20000; ++i)
        store.add(0, i, i);
    begin();
    kept->leave();
    ScriptedPrompts prompts;
    ScriptedDialogs dialogs;
    ProgramValues values;
    std::string status;
    RunFiles runFiles(
        {prompts, values, *kept, dateText, [&status](const std::string& text) { status = text; }});
    const std::string path = folder.path("some.log");
    ASSERT_EQ(runFiles.save({design, store, start}, RunFiles::Kind::log, path), "");
    const std::string whole = contents(path);
    prompts.stopsWork = true;
    design.title = "other";
    EXPECT_EQ(runFiles.save({design, store, start}, RunFiles::Kind::log, path), "");
    EXPECT_EQ(status, "Saving log to some.log was stopped");
    runFiles.recover(dialogs);
    EXPECT_EQ(contents(path), whole);

    prompts.stopsWork = false;
    prompts.chosen = 0;
    dialogs.chosen = path;
    runFiles.recover(dialogs);
    EXPECT_TRUE(contents(path) == whole);
    EXPECT_TRUE(files().empty());
}

TEST_F(KeptRunsTest, TellsOnceOfEachCrash)
{
    keepRun("left", 9);
    begin();
    kept->flush();
    restart();
    EXPECT_FALSE(kept->takeCutOff()) << "the one was left, the other had no sample";

    keepRun("cut", 10, false);
    EXPECT_TRUE(kept->takeCutOff());
    EXPECT_FALSE(kept->takeCutOff());
    EXPECT_EQ(texts(), (std::vector<std::string>{"1700000000123   left (1 sample in 0:01)",
                                                 "1700000000123   cut (1 sample in 0:01, cut off)"}))
        << "the time of a file stays";
}

TEST_F(KeptRunsTest, ReadsWhatIsWholeOfADamagedFile)
{
    const std::string whole = head() + "1,1,5\r\n2,1,6\r\n";
    EXPECT_EQ(loaded(head() + "1,1,5\n1,2,6\n"), "1=5 2=6 ");
    for (const std::string& end : {std::string("1,2,7"), std::string("1,2\r\n1,9,9\r\n"),
                                   std::string("4,2,3\r\n1,9,9\r\n"), std::string(1'000'000, '1')})
        EXPECT_EQ(loaded(whole + end), "1=5 1=6 ") << end.substr(0, 20);
    const std::string why =
        failureOf<FileError>([&] { loaded("drive\r\n|-1\r\nEOP - end of Parms\r\nsoon\r\n"); });
    EXPECT_EQ(why, "\"" + folder.path("some.run") + "\" can't be read: the time of its start is missing");

    keepRun("good", 1);
    folder.write(runs + "/empty.run", "");
    folder.write(runs + "/noSamples.run", head());
    folder.write(runs + "/other.obc", whole);
    fs::create_directories(utf8Path(runs + "/folder.run"));
    EXPECT_FALSE(kept->takeCutOff()) << "nothing of them can be brought back";
    EXPECT_EQ(texts().size(), 1U);
}

TEST_F(KeptRunsTest, KeepsTheLastTenOfSoMuchAndThoseThatWereCutOffLonger)
{
    keepRun("crash", 30, false);
    for (int age = 12; age > 0; --age)
        keepRun("t" + std::to_string(age), age);
    EXPECT_EQ(files().size(), 10);
    EXPECT_NE(texts().front().find("t1 (1 sample"), std::string::npos);
    EXPECT_NE(texts().back().find("crash (1 sample"), std::string::npos);

    const auto size = fs::file_size(utf8Path(files().at(0)));
    kept.emplace(runs, dateText, 3 * size + size / 2);
    keepRun("t0", 0);
    EXPECT_EQ(files().size(), 3);
    kept.emplace(runs, dateText, size / 2);
    EXPECT_FALSE(kept->takeCutOff());
    EXPECT_EQ(texts(), std::vector<std::string>{"1700000000123   t0 (1 sample in 0:01)"})
        << "crashes alone don't fill the disk; the newest stays whatever its size";
}

TEST_F(KeptRunsTest, SaysWhenNothingCanBeKept)
{
    folder.write(runs, "no folder");
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
    EXPECT_EQ(content(), head() + "1,1,1\r\n") << "it begins anew";
}

#ifdef __unix__
TEST_F(KeptRunsTest, StopsWhenTheDiskIsFull)
{
    begin();
    sample(0, 1, 1);
    kept->flush();
    const std::size_t room = head().size() + 1001;
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
    EXPECT_TRUE(why.ends_with(".run\" can't be written: File too large"))
        << "found out while samples came: " << why;
    EXPECT_EQ(content().size(), room) << "what has gone out stays";
    begin();
    kept->leave();
    EXPECT_EQ(texts(), std::vector<std::string>{"1700000000123   drive (10001 samples in 0:02)"})
        << "in place of the one that failed";
}
#endif

} // namespace
} // namespace zint
