// Arbitrary replies to "0101" and "03", the first up to its prompt.

#include "codes/canCodes.h"
#include "fuzz/fuzzInput.h"

#include <algorithm>

void zint::fuzz(std::string_view input)
{
    const auto behindStatus = std::min(input.find('>'), input.size());
    const auto units = canCodes(input.substr(behindStatus), input.substr(0, behindStatus));
    if (!units)
        return;
    require(!units->empty(), "someone has answered in the layout");
    std::size_t codes = 0;
    for (const CanUnit& unit : *units) {
        codes += unit.codes.size();
        require(std::ranges::all_of(unit.codes, [](const std::string& code) { return code.size() == 5; }),
                "a code has five characters");
    }
    require(4 * codes <= input.size(), "each byte of a code is sent once");
}
