#include "link/lineSettings.h"

#include "link/commError.h"
#include "shared/module1.h"

#include <string>

namespace zint {
namespace {

constexpr int invalidSettings = 22; // EINVAL, the number systems give for a setting that a port can't take

} // namespace

LineSettings LineSettings::parse(std::string_view text)
{
    constexpr std::string_view frame = ",N,8,1";
    const int speed =
        text.ends_with(frame) ? integerIn(text.substr(0, text.size() - frame.size())).value_or(0) : 0;
    if (speed < 1)
        throw CommError(invalidSettings,
                        "The line settings \"" + std::string(text) + "\" are not understood");
    return {.bitsPerSecond = speed};
}

} // namespace zint
