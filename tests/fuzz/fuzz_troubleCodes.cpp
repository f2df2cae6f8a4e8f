// Arbitrary replies to "03".

#include "codes/troubleCodes.h"
#include "fuzz/fuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace zint;
    const auto codes = storedCodes(asText(data, size));
    require(codes.size() <= (size + 2) / 6, "a code takes six characters");
    for (const std::string& code : codes) {
        require(code.size() >= 2 && code.size() <= 5, "a code has a prefix and at most three characters");
        require(std::string_view("PCBU").find(code[0]) != std::string_view::npos && code[1] >= '0' &&
                    code[1] <= '3',
                "a code begins with its system and a digit");
        require(code != "P0000", "no code is not listed");
    }
    return 0;
}
