#include "launcher/launcher.h"
#include "shared/fileError.h"
#include "shared/programInfo.h"
#include "support/fixedPortList.h"
#include "support/memorySettings.h"
#include "support/scriptedPrompts.h"
#include "support/temporaryFolder.h"

namespace zint {
namespace {

const std::vector<std::string> keys{"comPort",  "comSpeed",   "InitDir", "DTCdb",
                                    "parmSave", "parmOutput", "parmLog", "parmExport"};

std::string today(std::chrono::system_clock::time_point) { return "today"; }

struct LauncherTest : testing::Test {
    TemporaryFolder folder;
    MemorySettings settings;
    FixedPortList system;
    PortDirectory ports{settings, system};
    ScriptedPrompts prompts;
    ProgramValues values;
    Design design;
    Launcher::System machine{.workingFolder = folder.path(),
                             .sampleFolder = "/samples/",
                             .descriptionsFile = folder.path("dtc.txt"),
                             .findBrowser = [] { return "/bin/www"; },
                             .userDataFolder = folder.path(),
                             .dateText = today};
    Launcher launcher{settings, ports, prompts, values, design, machine};

    void store(const std::vector<std::string>& texts)
    {
        for (std::size_t i = 0; i < texts.size(); ++i)
            settings.save("Startup", keys.at(i), texts[i]);
    }

    std::string stored() const
    {
        std::string texts;
        for (const std::string& key : keys)
            texts += settings.get("Startup", key) + ",";
        return texts;
    }

    std::string fileNames() const
    {
        return values.parmSaveFile + "," + values.parmOutputFile + "," + values.parmLogFile + "," +
               values.parmExportFile;
    }

    std::string connection() const
    {
        const auto [port, speed, device, kind] = launcher.connection();
        return portName(port) + " " + std::to_string(speed) + " " + device;
    }
};

TEST_F(LauncherTest, UsesTheSpeedAtWhichAnAdapterWasFound)
{
    ports.assign(PortNumber{2}, "/dev/ttyUSB0");
    launcher.useConnection(PortNumber{2}, 38400);
    EXPECT_EQ(launcher.panel().comPort, 1);
    EXPECT_EQ(launcher.panel().comSpeed, 1);
    EXPECT_EQ(ports.assignment(PortNumber{2}), "/dev/ttyUSB0");
    for (const int speed : {115200, 9600}) { // a port with a speed of its own keeps having one
        launcher.useConnection(PortNumber{2}, speed);
        EXPECT_EQ(ports.assignment(PortNumber{2}), "/dev/ttyUSB0@" + std::to_string(speed));
    }
    launcher.useConnection(PortNumber{3}, std::nullopt);
    EXPECT_EQ(launcher.panel().comPort, 2);
    EXPECT_EQ(launcher.panel().comSpeed, 1);
}

TEST_F(LauncherTest, StartsWithDefaultsOnTheFirstRun)
{
    EXPECT_EQ(launcher.click(Tool::pollRunner), Tool::pollDesigner) << "the design has unpolled events";
    EXPECT_TRUE(values.isPollingWanted);
    dropUnpolled(design);
    EXPECT_EQ(launcher.click(Tool::pollRunner), Tool::pollRunner);
    EXPECT_FALSE(values.isPollingWanted);

    launcher.load();
    EXPECT_EQ(launcher.panel().caption, "Zint v" + programInfo().version());
    EXPECT_EQ(launcher.panel().speedHint, "Most USB and Bluetooth adapters: 38400");
    EXPECT_EQ(connection(), "com1 9600 nothing connected");
    EXPECT_EQ(values.browserPath + values.sampleFolder, "/bin/www/samples/");
    launcher.unload();
    EXPECT_EQ(stored(), "0,0," + folder.path() + "," + folder.path("dtc.mdb") + ",,,,,");
    machine.workingFolder = "/home/b";
    Launcher second{settings, ports, prompts, values, design, machine};
    second.load();
    EXPECT_FALSE(values.isFolderRemembered) << "nobody has chosen it by now, so that the samples are offered";
    EXPECT_EQ(second.panel().speedHint, "");
}

TEST_F(LauncherTest, TellsWhatThePortsStandForAndWhereNothingAnswers)
{
    system.ports = {{"/dev/ttyUSB0", "FT232R USB UART", ""}};
    ports.assign(PortNumber{3}, "ttyUSB0");
    ports.assign(PortNumber{4}, "simulated");
    EXPECT_TRUE(launcher.refreshPortInfo());
    EXPECT_FALSE(launcher.refreshPortInfo()) << "nothing new";
    EXPECT_EQ(launcher.panel().portInfo, "/dev/ttyUSB0 - FT232R USB UART");
    EXPECT_EQ(launcher.panel().portTips[2], "ttyUSB0 - FT232R USB UART") << "the same device";
    EXPECT_EQ(launcher.connection().silenceReason(Heard::nothing),
              "No answer on com1: nothing was received. Check port (/dev/ttyUSB0) and speed (9600) in the "
              "launcher; most adapters use 38400.");
    launcher.chooseSpeedForThisRun(1);
    launcher.load();
    EXPECT_EQ(launcher.panel().speedHint, "") << "there is a choice already";
    launcher.choosePort(3);
    EXPECT_EQ(connection() + launcher.panel().portInfo, "com4 38400 simulated vehiclesimulated vehicle");
    EXPECT_TRUE(launcher.panel().comSpeedEnabled);

    const std::string name = folder.path("a.txt");
    const std::vector<std::array<std::string, 4>> rows{
        {"/dev/ttyUSB0@115200", "com4 115200 /dev/ttyUSB0",
         "Line speed does not apply: the port has its own, 115200",
         "Check port (/dev/ttyUSB0) and speed (115200) in the launcher; most adapters use 38400."},
        {"tcp:h", "com4 38400 h:35000", "Line speed does not apply in a network",
         "Check that the adapter (h:35000) has power, and that no phone and no other program uses it: it "
         "serves one at a time."},
        {"replay:" + name, "com4 38400 recording \"" + name + '"', "Line speed does not apply to a recording",
         "Check port (recording \"" + name + "\") in the launcher."},
    };
    for (const auto& [location, choice, hint, advice] : rows) {
        ports.assign(PortNumber{4}, location);
        EXPECT_TRUE(launcher.refreshPortInfo());
        EXPECT_EQ(connection(), choice);
        EXPECT_EQ(launcher.panel().speedHint, hint);
        EXPECT_FALSE(launcher.panel().comSpeedEnabled);
        EXPECT_EQ(launcher.connection().advice(), advice);
    }
}

TEST_F(LauncherTest, ReportsSettingsThatItCannotUse)
{
    for (const std::string bad : {"x", "", "-1", "2"}) {
        store({"7", bad});
        launcher.load();
        EXPECT_EQ(prompts.takeMessage(), "The saved setting \"comSpeed\" is \"" + bad +
                                             "\", which is no "
                                             "position in its list. The first entry is used instead.");
    }
    EXPECT_TRUE(stored().starts_with("7,2,")) << "Show Defaults is to show it";
    launcher.unload();
    EXPECT_TRUE(stored().starts_with("7,0,")) << "the bad value does not stay";
    settings.damageText = "damaged";
    launcher.load();
    EXPECT_EQ(prompts.takeMessage(), "damaged");
}

TEST_F(LauncherTest, KeepsChoicesFoldersAndFilesFromRunToRun)
{
    store({"2", "1", "dir", "db", "x\\a.obc", "", "run1.log", "C:\\designs\\"});
    values.parmOutputFile = "left alone"; // set for a path that is not empty only
    launcher.choosePortForThisRun(PortNumber{5});
    launcher.load();
    EXPECT_EQ(fileNames() + connection(), "a.obc,left alone,run1.log,com5 38400 nothing connected");
    EXPECT_TRUE(values.isFolderRemembered);
    values.parmInitDir = "dir now";
    launcher.showDefaults();
    EXPECT_EQ(prompts.takeMessage(),
              "Registry:\r\ncomPort 2\r\ncomSpeed 1\r\nInitDir dir\r\nDTCdb db\r\n"
              "parmSaveDir x\\a.obc\r\nparmOutputDir \r\nparmLogDir run1.log\r\n"
              "parmExportDir C:\\designs\\\r\nVars:\r\nparmInitDir dir now\r\nparmDTCdb db\r\n");
    launcher.clearDefaults();
    EXPECT_EQ(fileNames() + connection(), ",,,com5 38400 nothing connected");
    EXPECT_FALSE(values.isFolderRemembered);
    EXPECT_EQ(stored(), "2,1,dir,db,x\\a.obc,,run1.log,C:\\designs\\,") << "the store follows at the exit";
    launcher.unload();
    EXPECT_EQ(stored(), "2,1,,,,,,,");
    values = {"/elsewhere", "/b.mdb", "s", "o", "l", "e"};
    launcher.choosePort(8); // there is none
    launcher.choosePort(4); // the user's choice from now on, although the same
    launcher.chooseSpeed(0);
    settings.flushFailure = "the disk is full";
    launcher.unload();
    EXPECT_EQ(prompts.takeMessage(), "The settings could not be saved: the disk is full");
    EXPECT_EQ(stored(), "4,0,/elsewhere,/b.mdb,s,o,l,e,");
}

TEST_F(LauncherTest, OffersWhatWasNotSavedSinceACrash)
{
    const auto before = std::chrono::system_clock::now() - std::chrono::minutes(1);
    std::filesystem::create_directory(folder.path("runs"));
    std::filesystem::create_directory(folder.path("designs"));
    for (const auto& [name, tool] :
         {std::pair("runs/a.run", Tool::pollRunner), {"designs/a.obc", Tool::pollDesigner}}) {
        TemporaryFolder::write(folder.path(name), "x");
        prompts.chosen = 0;
        EXPECT_EQ(launcher.offerUnsavedWork(before), tool);
        EXPECT_TRUE(prompts.question.ends_with("\nPoll Data: 1 unsaved, the last of today"));
    }
    EXPECT_EQ(launcher.offerUnsavedWork(before), std::nullopt) << "cancelled";
    prompts.chosen = 0;
    EXPECT_EQ(launcher.offerUnsavedWork(before + std::chrono::hours(1)), std::nullopt) << "all is older";
}

TEST_F(LauncherTest, SetsUpCodeDescriptionsWhereThereAreNone)
{
    launcher.load();
    EXPECT_THROW(launcher.setUpDescriptions(), FileError) << "there is no such text";
    TemporaryFolder::write(machine.descriptionsFile, "P0010,Fault 16\n");
    launcher.clearDefaults(); // the path, too
    launcher.setUpDescriptions();
    EXPECT_EQ(prompts.takeMessage(), "1 code descriptions are set up in " + values.parmDTCdb);
    launcher.setUpDescriptions();
    EXPECT_TRUE(prompts.takeMessage().ends_with("/dtc.mdb\r\nIt stays as it is."));
}

} // namespace
} // namespace zint
