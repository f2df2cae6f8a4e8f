#include "commands/ownDefinitions.h"

#include "commands/commandSession.h"
#include "platform/text.h"
#include "process/folders.h"

namespace zint {

ParametersFile userParametersFile() { return ParametersFile(fromQt(userDataFolder())); }

void defineOwn(Design& design, const std::string& path)
{
    if (defineBeside(design, path, userParametersFile()).isNone())
        return;
    for (const DesignEntry& event : design.events) {
        if (isOwnConversion(event.conversion) && !event.own)
            complain("\"" + event.name() + "\" (" + event.code + "): own parameter " +
                     std::to_string(event.conversion) + " is not defined here");
    }
}

} // namespace zint
