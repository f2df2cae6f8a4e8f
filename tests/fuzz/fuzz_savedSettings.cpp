// Arbitrary texts in the settings store: the launcher starts with them and writes back what the next start
// can use. Input: one saved text a line, in the order of saving; "-" leaves a setting out.

#include "fuzz/fuzzInput.h"
#include "launcher/launcher.h"
#include "support/fixedPortList.h"
#include "support/memorySettings.h"

#include <sstream>

namespace zint {
namespace {

struct Prompter final : Prompts {
    int messages = 0;

    void message(const std::string&, const std::string&, const std::string&) override { ++messages; }
    bool confirm(const std::string&, const std::string&) override { return false; }
    std::optional<std::string> input(const std::string&, const std::string&, const std::string&) override
    {
        return std::nullopt;
    }
    std::optional<std::size_t> choose(const std::string&, const std::string&,
                                      const std::vector<std::string>&) override
    {
        return std::nullopt;
    }
};

/// A start with what the store holds. @return how many settings were reported
int start(MemorySettings& settings)
{
    const FixedPortList system;
    const PortDirectory ports(settings, system);
    Prompter prompts;
    ProgramValues values;
    Design design;
    Launcher launcher(settings, ports, prompts, values, design,
                      {.workingFolder = "/home", .findBrowser = [] { return "www"; }});
    launcher.load();
    launcher.refreshPortInfo();
    launcher.connection(); // port and speed are in their lists
    require(values.parmSave.ends_with(values.parmSaveFile), "a file name is the end of its path");
    launcher.unload();
    return prompts.messages;
}

} // namespace
} // namespace zint

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace zint;
    std::istringstream input(std::string(asText(data, size)));
    MemorySettings settings;
    for (const char* key :
         {"comPort", "comSpeed", "InitDir", "DTCdb", "parmSave", "parmOutput", "parmLog", "parmExport"}) {
        if (std::string text; std::getline(input, text) && text != "-")
            settings.save("Startup", key, text);
    }
    require(start(settings) <= 2, "port and speed alone can be out of range");
    require(start(settings) == 0, "what is written back is usable");
    return 0;
}
