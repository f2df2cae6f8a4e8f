// Arbitrary replies to "0101" and "03", the first up to its prompt.

#include "codes/canCodes.h"
#include "fuzz/fuzzInput.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace zint;
    const std::string_view text = asText(data, size);
    const auto behindStatus = std::min(text.find('>'), text.size());
    const auto units = canCodes(text.substr(behindStatus), text.substr(0, behindStatus));
    if (!units)
        return 0;
    require(!units->empty(), "someone has answered in the layout");
    std::size_t codes = 0;
    for (const CanUnit& unit : *units) {
        codes += unit.codes.size();
        require(std::ranges::all_of(unit.codes, [](const std::string& code) { return code.size() == 5; }),
                "a code has five characters");
    }
    require(4 * codes <= size, "each byte of a code is sent once");
    return 0;
}
