#include "link/lineSettings.h"

#include "link/commError.h"
#include "shared/module1.h"
#include "shared/runTimeError.h"

#include <string>

namespace zint {
namespace {

constexpr int invalidSettings = 22; // EINVAL, the number systems give for a setting that a port can't take

[[noreturn]] void refuse(std::string_view text)
{
    throw CommError(invalidSettings, "The line settings \"" + std::string(text) + "\" are not understood");
}

} // namespace

LineSettings LineSettings::parse(std::string_view text)
{
    constexpr std::string_view frame = ",N,8,1";
    if (!text.ends_with(frame))
        refuse(text);
    try {
        const int speed = toInteger(text.substr(0, text.size() - frame.size()));
        if (speed < 1)
            refuse(text);
        return {.bitsPerSecond = speed};
    } catch (const RunTimeError&) {
        refuse(text);
    }
}

} // namespace zint
