#pragma once

#include "app/startForm.h"
#include "support/fixedPortList.h"
#include "support/memorySettings.h"

#include <memory>
#include <optional>
#include <vector>

namespace zint {

/// What the launcher's window needs beside the common context.
struct LauncherParts {
    explicit LauncherParts(MemorySettings& store) : settings(store) {}

    std::unique_ptr<startForm> makeForm(ToolContext& context)
    {
        const auto makeLauncher = [this, &context](Prompts& prompts) -> Launcher& {
            launcher.emplace(settings, ports, prompts, context.values, context.design,
                             Launcher::System{.workingFolder = "/work", .findBrowser = [] { return ""; }});
            return *launcher;
        };
        return std::make_unique<startForm>(
            context, makeLauncher,
            startForm::Actions{.hasTool = [](Tool tool) { return tool != Tool::terminal; },
                               .openTool = [this](Tool tool) { opened.push_back(tool); },
                               .assignPorts = [this] { ++portsAssigned; }});
    }

    MemorySettings& settings;
    FixedPortList system;
    PortDirectory ports{settings, system};
    std::optional<Launcher> launcher;
    std::vector<Tool> opened;
    int portsAssigned = 0;
};

} // namespace zint
