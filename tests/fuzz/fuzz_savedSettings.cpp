// Arbitrary texts in the settings store: the launcher starts with them, and writes back what the next start
// can use.
//
// Input: one saved text a line, in the order of `keys`; a line "-" leaves the setting out.

#include "app/launcher.h"
#include "fuzz/fuzzInput.h"
#include "support/fixedPortList.h"
#include "support/memorySettings.h"

namespace zint {
namespace {

struct Prompter final : Prompts {
    int messages = 0;

    void message(const std::string& text, const std::string&) override
    {
        require(!text.empty(), "a message says something");
        ++messages;
    }
    bool confirm(const std::string&, const std::string&) override { return false; }
};

constexpr std::array<const char*, 8> keys = {"comPort",  "comSpeed",   "InitDir", "DTCdb",
                                             "parmSave", "parmOutput", "parmLog", "parmExport"};

/// A start with what the store holds. @return how many settings were reported
int start(MemorySettings& settings)
{
    FixedPortList system;
    system.ports = {{"/dev/ttyUSB0", "", ""}};
    PortDirectory ports(settings, system);
    Prompter prompts;
    ProgramValues values;
    Design design;
    Launcher launcher(settings, ports, prompts, values, design,
                      {.workingFolder = "/home", .findBrowser = [] { return std::string(); }});
    launcher.load();
    launcher.refreshPortInfo();
    const ConnectionChoice choice = launcher.connection();
    require(choice.portNumber >= 1 && choice.portNumber <= PortDirectory::portCount,
            "the port is in its list");
    require(choice.speed == "9600" || choice.speed == "38400", "the speed is in its list");
    require(!values.parmInitDir.empty() && !values.parmDTCdb.empty(), "folder and database have a default");
    require(values.parmSave.ends_with(values.parmSaveFile), "a file name is the end of its path");
    require(!launcher.panel().portInfo.empty(), "the window tells what the port stands for");
    const int reported = prompts.messages;
    launcher.showDefaults();
    launcher.unload();
    return reported;
}

} // namespace
} // namespace zint

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace zint;
    FuzzInput input(data, size);
    MemorySettings settings;
    for (const char* key : keys) {
        if (const auto text = input.takeLine(); text != "-")
            settings.save("Startup", key, std::string(text));
    }
    for (int port = 1; port <= PortDirectory::portCount; ++port) {
        if (const auto text = input.takeLine(); !text.empty())
            settings.save("Ports", PortDirectory::name(port), std::string(text));
    }
    require(start(settings) <= 2, "port and speed alone can be out of range");
    require(start(settings) == 0, "what is written back is usable");
    return 0;
}
