#include "catalogue/requestTime.h"

namespace zint {

double requestSeconds(SampleSpeed sampleSpeed, int bitsPerSecond)
{
    constexpr double charactersPerRequest = 21; // "010C" and its end, the reply and its prompt
    constexpr double bitsPerCharacter = 10;
    constexpr std::chrono::milliseconds automaticWait{
        100}; // adapters that decide by themselves wait about so long
    const std::chrono::duration<double> wait = sampleSpeed.value_or(automaticWait);
    return wait.count() + charactersPerRequest * bitsPerCharacter / bitsPerSecond;
}

} // namespace zint
