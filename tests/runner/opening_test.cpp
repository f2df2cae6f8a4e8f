#include "runner/pollPrintout.h"
#include "runner/pollerTest.h"
#include "support/scriptedDialogs.h"

namespace zint {
namespace {

using FileKind = RunFiles::Kind;

const std::string bikeHead =
    "Bike\r\n|200\r\n010D|Speed|7|1|0\r\n0105|Coolant|3|1|0\r\nEOP - end of Parms\r\nyesterday\r\n";
const std::string bikeLog = bikeHead + " 4 \r\n##1\r\n0,40\r\n60,50\r\n3661,50\r\n";

/// With an unsaved run of two samples, 1.25 s apart, and a log of another design.
struct OpeningTest : PollerTest {
    const std::string bike = folder.path("bike.log");
    ScriptedDialogs dialogs;
    std::string noted;

    OpeningTest()
    {
        TemporaryFolder::write(bike, bikeLog);
        poller->onLog = [this](const std::string& path) { noted += fileNamePart(path) + " "; };
        runOfTwo([] {});
    }

    void runOfTwo(const std::function<void()>& between)
    {
        start({{"010C", good}, {"010C", ""}});
        clock.now += std::chrono::milliseconds(1250);
        between();
        reply();
        pressStop();
    }

    std::string shown() const
    {
        const PollPanel::Row& row = panel().obdGrid.back();
        return panel().titleLab + "|" + panel().statusBox + "|" + panel().statLab1 + "|" +
               panel().lengthHint + "|" + row.description + row.value + " " + row.samples;
    }

    std::string saved(FileKind kind)
    {
        dialogs.chosen = folder.path("saved.txt");
        poller->save(kind, poller->chooseFile(kind, RunFiles::Name::usual, dialogs));
        return contents(folder.path("saved.txt"));
    }
};

TEST_F(OpeningTest, ALogIsShownAndNothingPolledIntoItUntilTheValuesAreReset)
{
    int designs = 0;
    const auto generation = poller->samples().generation();
    poller->onDesignChanged = [&] { designs += poller->samples().events().size() == design.events.size(); };
    poller->openLog(bike);
    EXPECT_EQ(shown(), "Bike (2 events), from bike.log|bike.log opened. The unsaved run is under Recover "
                       "Unsaved Run...|3 samples in 1:01:01|First start: yesterday|Coolant 0");
    EXPECT_EQ(panel().obdGrid[0].maximum, "31.075mph");
    EXPECT_NE(poller->samples().generation(), generation) << "whoever has read the old ones";
    EXPECT_EQ(pollPrintout(*poller, dateText).find("Bytes"), std::string::npos) << "they are of this window";
    poller->pressStart();
    EXPECT_EQ(prompts.takeMessage(),
              "These values are from bike.log. Choose New Poll/Reset Values before polling.");
    poller->setMaxLoops("5");
    EXPECT_EQ(panel().lengthHint, "First start: yesterday");
    poller->resetValues();
    EXPECT_EQ(shown(), "Car (1 events)|Values reset.|0 Loops, 0 Events, |about 0:03 with this design (0.63 s "
                       "per loop)|0rpm 0");
    EXPECT_EQ(designs, 1) << "with the samples in place";
    EXPECT_EQ(kept.list().size(), 1U) << "the unsaved run only";
    poller->chooseFile(FileKind::log, RunFiles::Name::usual, dialogs);
    EXPECT_EQ(dialogs.asked.find("bike.log"), std::string::npos);
    start({{"010C", good}, {"010C", ""}});
    poller->openLog(bike);
    EXPECT_EQ(prompts.takeMessage(), "Stop polling before another run is opened.");
}

TEST_F(OpeningTest, AnOpenedRunIsWrittenAsItIs)
{
    poller->openLog(bike);
    EXPECT_EQ(saved(FileKind::table), "Bike yesterday\r\n \r\nSecond(s)\tSpeed(mph)\tCoolant(C)\r\n"
                                      "0\t24.86\t\r\n60\t31.075\t\r\n3661\t31.075\t\r\n");
    EXPECT_EQ(saved(FileKind::dump), "-1,1,0\r\n2,40,0\r\n3,50,60\r\n0,50,3661\r\n");
    EXPECT_EQ(saved(FileKind::log), bikeLog);
    EXPECT_NE(dialogs.asked.find("save " + folder.path() + "|bike.log|"), std::string::npos)
        << "not over it without a word";
    EXPECT_EQ(noted, "bike.log saved.txt ");
    poller->unload();
    EXPECT_EQ(kept.list().size(), 1U) << "the unsaved run only";
}

TEST_F(OpeningTest, WhatCantBeOpenedIsToldAndChangesNothing)
{
    std::string big = bikeHead + " 40000 \r\n##1\r\n";
    for (int sample = 1; sample < 40000; ++sample)
        big += "1,1\r\n";
    const std::tuple<const char*, std::string, const char*> rows[] = {
        {"cut.log", bikeLog.substr(0, bikeLog.size() - 3), "line 11: the file ends within the line"},
        {"rubbish.log", std::string(200000, 'x'), "line 1: a line is longer than"},
        {"noSamples.log", bikeHead + " 0 \r\n", "holds no samples"},
        {"noEvents.log", "Bike\r\n|200\r\nEOP - end of Parms\r\ntoday\r\n 0 \r\n", "holds no samples"},
        {"runs", "", "it is a folder"},
        {"none/gone.log", "", "can't be read: No such file"},
    };
    const std::string before = shown();
    for (const auto& [file, text, why] : rows) {
        if (std::string_view(file).ends_with(".log"))
            TemporaryFolder::write(folder.path(file), text);
        poller->openLog(folder.path(file));
        const std::string message = prompts.takeMessage();
        EXPECT_TRUE(message.starts_with("\"" + folder.path(file) + "\"")) << message;
        EXPECT_NE(message.find(why), std::string::npos) << message;
    }
    EXPECT_EQ(shown(), before);
    TemporaryFolder::write(bike, big);
    prompts.stopsWork = true;
    poller->openLog(bike);
    EXPECT_EQ(panel().statusBox, "Reading bike.log was stopped");
    EXPECT_EQ(noted + values.parmInitDir, "");
    prompts.stopsWork = false;
    poller->openLog(bike);
    EXPECT_EQ(panel().statLab1, "39999 samples in 0:01");
}

TEST_F(OpeningTest, ARunThatCouldNotBeKeptStays)
{
    poller->resetValues();
    std::filesystem::remove_all(folder.path("runs"));
    TemporaryFolder::write(folder.path("runs"), "no folder");
    runOfTwo([] {});
    poller->openLog(bike);
    EXPECT_TRUE(prompts.takeMessage().starts_with("The present run is not saved and can't be kept."));
    EXPECT_TRUE(prompts.reason.starts_with("The folder "));
    saved(FileKind::log);
    poller->openLog(bike);
    EXPECT_EQ(panel().statusBox, "bike.log opened.");
}

TEST_F(OpeningTest, ARecoveredRunIsShownWithItsTrueTimesUnlessOneIsOn)
{
    const auto recovered = [this] {
        poller->resetValues();
        prompts.chosen = 0;
        dialogs.chosen = folder.path("run.log");
        return poller->recover(dialogs).value();
    };
    OpenedRun first = recovered();
    runOfTwo([&] {
        poller->showRecovered(std::move(first));
        EXPECT_EQ(panel().titleLab, "Car (1 events)");
    });
    poller->showRecovered(recovered());
    EXPECT_EQ(panel().titleLab + "|" + panel().statusBox,
              "Car (1 events), from run.log|run.log saved and opened.");
    EXPECT_EQ(poller->samples()[2].seconds(), 1.25);
    EXPECT_EQ(noted, "run.log run.log ");
}

} // namespace
} // namespace zint
