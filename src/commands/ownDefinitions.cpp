#include "commands/ownDefinitions.h"

#include "commands/commandSession.h"
#include "parameters/designParameters.h"
#include "parameters/parametersFile.h"
#include "platform/text.h"
#include "process/folders.h"
#include "shared/module1.h"

#include <algorithm>

namespace zint {

OwnParameters userParameters() { return ParametersFile(fromQt(userDataFolder())).load(); }

void defineOwn(Design& design, const std::string& path)
{
    const auto isOwn = [](const DesignEntry& event) { return isOwnConversion(event.conversion); };
    if (std::ranges::none_of(design.events, isOwn))
        return;
    OwnParameters table = userParameters();
    if (const std::string beside = definitionsPath(path); fileExists(beside))
        renumber(design, takeDefinitions(design, loadParameters(beside), table).numbers);
    define(design, table);
    for (const DesignEntry& event : design.events) {
        if (isOwn(event) && !event.own)
            complain("\"" + event.name() + "\" (" + event.code + "): own parameter " +
                     std::to_string(event.conversion) + " is not defined here");
    }
}

} // namespace zint
