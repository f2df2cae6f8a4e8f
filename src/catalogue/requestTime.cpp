#include "catalogue/requestTime.h"

#include "catalogue/design.h"

namespace zint {

double requestSeconds(int sampleSpeed, int bitsPerSecond)
{
    constexpr double charactersPerRequest = 21; // "010C" and its end, the reply and its prompt
    constexpr double bitsPerCharacter = 10;
    constexpr double automaticWait = 0.1; // adapters that choose for themselves wait about so long
    const double wait = sampleSpeed == Design::automaticSpeed ? automaticWait : sampleSpeed / 1000.0;
    return wait + charactersPerRequest * bitsPerCharacter / bitsPerSecond;
}

} // namespace zint
