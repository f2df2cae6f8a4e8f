#include "app/launcher.h"
#include "shared/programInfo.h"
#include "support/fixedPortList.h"
#include "support/memorySettings.h"
#include "support/scriptedPrompts.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

struct LauncherTest : testing::Test {
    MemorySettings settings;
    FixedPortList system;
    PortDirectory ports{settings, system};
    ScriptedPrompts prompts;
    ProgramValues values;
    Design design;
    Launcher launcher{settings, ports, prompts, values, design, surroundings('/')};

    static Launcher::System surroundings(char separator)
    {
        return {
            .workingFolder = "/home/a", .pathSeparator = separator, .findBrowser = [] { return "/bin/www"; }};
    }

    void store(const std::string& key, const std::string& value) { settings.save("Startup", key, value); }

    /// Stores a text for each of the eight settings, in the order in which they are written.
    void storeAll(const std::vector<std::string>& texts)
    {
        for (std::size_t i = 0; i < keys.size(); ++i)
            store(keys[i], texts.at(i));
    }

    std::vector<std::string> allStored() const
    {
        std::vector<std::string> texts;
        for (const std::string& key : keys)
            texts.push_back(stored(key));
        return texts;
    }

    const std::vector<std::string> keys = {"comPort",  "comSpeed",   "InitDir", "DTCdb",
                                           "parmSave", "parmOutput", "parmLog", "parmExport"};

    std::string stored(const std::string& key) const { return settings.get("Startup", key, "(missing)"); }
};

TEST_F(LauncherTest, StartsWithDefaultsOnTheFirstRun)
{
    EXPECT_EQ(design.title(), "Default Settings");
    launcher.load();
    EXPECT_EQ(launcher.panel().caption, "Zint v" + programInfo().version());
    EXPECT_EQ(launcher.panel().comPort, 0);
    EXPECT_EQ(launcher.panel().comSpeed, 0);
    EXPECT_EQ(values.parmInitDir, "/home/a");
    EXPECT_EQ(values.parmDTCdb, "/home/a/dtc.mdb");
    EXPECT_EQ(values.parmSave + values.parmOutput + values.parmLog + values.parmExport, "");
    EXPECT_EQ(values.parmSaveFile + values.parmOutputFile + values.parmLogFile + values.parmExportFile, "");
    EXPECT_EQ(values.browserPath, "/bin/www");

    const ConnectionChoice choice = launcher.connection();
    EXPECT_EQ(choice.portNumber, 1);
    EXPECT_EQ(choice.portName, "com1");
    EXPECT_EQ(choice.lineSettings(), "9600,N,8,1");

    launcher.showDefaults();
    EXPECT_EQ(
        prompts.takeMessage(),
        "Registry:\r\ncomPort \r\ncomSpeed \r\nInitDir \r\nDTCdb \r\nparmSaveDir \r\nparmOutputDir \r\n"
        "parmLogDir \r\nparmExportDir \r\nVars:\r\nparmInitDir /home/a\r\nparmDTCdb /home/a/dtc.mdb\r\n");
}

TEST_F(LauncherTest, WritesTheDatabasePathAsItsSystemDoes)
{
    Launcher onWindows(settings, ports, prompts, values, design, surroundings('\\'));
    onWindows.load();
    EXPECT_EQ(values.parmDTCdb, "/home/a\\dtc.mdb");
}

TEST_F(LauncherTest, ReadsWhatWasSaved)
{
    storeAll(
        {"2", "1", "/designs", "/data/codes.mdb", "C:\\designs\\a.obc", "", "run1.log", "C:\\designs\\"});
    values.parmOutputFile = "left alone";
    launcher.load();

    EXPECT_EQ(launcher.connection().portNumber, 3);
    EXPECT_EQ(launcher.connection().portName, "com3");
    EXPECT_EQ(launcher.connection().lineSettings(), "38400,N,8,1");
    EXPECT_EQ(values.parmInitDir, "/designs");
    EXPECT_EQ(values.parmDTCdb, "/data/codes.mdb");
    EXPECT_EQ(values.parmSave, "C:\\designs\\a.obc");
    EXPECT_EQ(values.parmSaveFile, "a.obc");
    EXPECT_EQ(values.parmLogFile, "run1.log");
    EXPECT_EQ(values.parmExportFile, "");
    EXPECT_EQ(values.parmOutputFile, "left alone") << "set for a path that is not empty only";
}

TEST_F(LauncherTest, ReportsSavedChoicesThatItCannotUse)
{
    for (const char* bad : {"x", "", "-1", "8", "1.5", "99999999999", "0x1"}) {
        store("comPort", bad);
        Launcher(settings, ports, prompts, values, design, surroundings('/')).load();
        const std::string text = prompts.takeMessage();
        EXPECT_NE(text.find("\"comPort\" is \"" + std::string(bad) + "\""), std::string::npos) << text;
    }
    store("comPort", "7");
    store("comSpeed", "2");
    launcher.load();
    EXPECT_NE(prompts.takeMessage().find("comSpeed"), std::string::npos);
    EXPECT_EQ(launcher.connection().portName, "com8");
    EXPECT_EQ(launcher.connection().speed, "9600");
    launcher.unload();
    EXPECT_EQ(stored("comSpeed"), "0") << "the bad value does not stay";
    EXPECT_EQ(stored("comPort"), "7");
}

TEST_F(LauncherTest, StartsWithAPathOfAnyLength)
{
    store("parmSave", std::string(40000, 'x') + "\\a.obc");
    EXPECT_NO_THROW(launcher.load());
    EXPECT_EQ(values.parmSaveFile, "a.obc");
}

TEST_F(LauncherTest, WritesEverythingBackAtTheExit)
{
    launcher.load();
    launcher.choosePort(4);
    launcher.chooseSpeed(1);
    values.parmInitDir = "/elsewhere";
    values.parmDTCdb = "/b.mdb";
    values.parmSave = "s";
    values.parmOutput = "o";
    values.parmLog = "l";
    values.parmExport = "e";
    EXPECT_EQ(settings.takeSavedKeys(), std::vector<std::string>{}) << "nothing is saved before the exit";
    launcher.unload();

    EXPECT_EQ(settings.takeSavedKeys(), keys);
    EXPECT_EQ(allStored(), (std::vector<std::string>{"4", "1", "/elsewhere", "/b.mdb", "s", "o", "l", "e"}));
    EXPECT_EQ(settings.flushes(), 1);
}

TEST_F(LauncherTest, SaysThatTheSettingsCouldNotBeSaved)
{
    launcher.load();
    settings.failToFlush("the disk is full");
    launcher.unload();
    EXPECT_NE(prompts.takeMessage().find("the disk is full"), std::string::npos);
}

TEST_F(LauncherTest, DoesNotSaveAChoiceForOneRun)
{
    store("comPort", "2");
    store("comSpeed", "0");
    launcher.load();
    launcher.choosePortForThisRun(5);
    launcher.chooseSpeedForThisRun(1);
    EXPECT_EQ(launcher.connection().portName, "com5");
    EXPECT_EQ(launcher.connection().speed, "38400");
    launcher.unload();
    EXPECT_EQ(stored("comPort"), "2");
    EXPECT_EQ(stored("comSpeed"), "0");

    launcher.choosePort(7);
    launcher.unload();
    EXPECT_EQ(stored("comPort"), "7") << "the user chose another one";
    EXPECT_EQ(stored("comSpeed"), "0");
}

TEST_F(LauncherTest, IgnoresPositionsOutsideItsLists)
{
    launcher.load();
    launcher.choosePort(3);
    launcher.chooseSpeed(1);
    for (const int position : {-1, 8, 1000})
        launcher.choosePort(position);
    for (const int position : {-1, 2, 1000})
        launcher.chooseSpeed(position);
    EXPECT_EQ(launcher.connection().portNumber, 4);
    EXPECT_EQ(launcher.connection().speed, "38400");
}

TEST_F(LauncherTest, ShowsWhatTheChosenPortStandsFor)
{
    launcher.load();
    system.ports = {{"/dev/ttyUSB0", "FT232R USB UART", ""}};
    EXPECT_TRUE(launcher.refreshPortInfo());
    EXPECT_FALSE(launcher.refreshPortInfo()) << "nothing new";
    EXPECT_EQ(launcher.panel().portInfo, "/dev/ttyUSB0 - FT232R USB UART");
    launcher.choosePort(1);
    EXPECT_EQ(launcher.panel().portInfo, "nothing connected");
    ports.assign(2, std::string(PortDirectory::simulated));
    EXPECT_TRUE(launcher.refreshPortInfo());
    EXPECT_EQ(launcher.panel().portInfo, "simulated vehicle");
}

TEST_F(LauncherTest, ShowsStoredAndPresentValues)
{
    storeAll({"2", "1", "dir", "db", "save", "output", "log", "export"});
    launcher.load();
    values.parmInitDir = "dir now";
    launcher.showDefaults();
    EXPECT_EQ(prompts.takeMessage(),
              "Registry:\r\ncomPort 2\r\ncomSpeed 1\r\nInitDir dir\r\nDTCdb db\r\n"
              "parmSaveDir save\r\nparmOutputDir output\r\nparmLogDir log\r\n"
              "parmExportDir export\r\nVars:\r\nparmInitDir dir now\r\nparmDTCdb db\r\n");

    launcher.clearDefaults();
    launcher.showDefaults();
    const std::string cleared = prompts.takeMessage();
    EXPECT_NE(cleared.find("InitDir dir\r\nDTCdb db\r\nparmSaveDir save\r\n"), std::string::npos) << cleared;
    EXPECT_TRUE(cleared.ends_with("Vars:\r\nparmInitDir \r\nparmDTCdb \r\n")) << cleared;
}

TEST_F(LauncherTest, ClearsFoldersAndFilesButNotTheStoreNorTheConnection)
{
    store("comPort", "2");
    store("parmSave", "/a/b.obc");
    launcher.load();
    values.parmOutput = values.parmLog = values.parmExport = "x";
    values.parmOutputFile = values.parmLogFile = values.parmExportFile = "x";
    launcher.clearDefaults();
    for (const std::string& value :
         {values.parmInitDir, values.parmDTCdb, values.parmSave, values.parmSaveFile, values.parmOutput,
          values.parmOutputFile, values.parmLog, values.parmLogFile, values.parmExport,
          values.parmExportFile})
        EXPECT_EQ(value, "");
    EXPECT_EQ(launcher.connection().portName, "com3");
    EXPECT_EQ(stored("parmSave"), "/a/b.obc");

    launcher.unload();
    EXPECT_EQ(stored("parmSave"), "");
    Launcher(settings, ports, prompts, values, design, surroundings('/')).load();
    EXPECT_EQ(values.parmInitDir, "/home/a") << "the next start begins anew";
    EXPECT_EQ(values.parmDTCdb, "/home/a/dtc.mdb");
}

TEST_F(LauncherTest, OpensTheDesignerForADesignWithUnpolledEvents)
{
    EXPECT_EQ(launcher.toolFor(Tool::pollRunner), Tool::pollDesigner) << "the default design has some";
    EXPECT_EQ(launcher.toolFor(Tool::codes), Tool::codes);
    EXPECT_EQ(launcher.toolFor(Tool::pollDesigner), Tool::pollDesigner);
    design.polledCount() = design.eventCount();
    EXPECT_EQ(launcher.toolFor(Tool::pollRunner), Tool::pollRunner);
}

} // namespace
} // namespace zint
