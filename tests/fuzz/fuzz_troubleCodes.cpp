// Arbitrary replies to "03".

#include "codes/troubleCodes.h"
#include "fuzz/fuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace zint;
    const std::string_view reply = FuzzInput(data, size).rest();
    const std::vector<std::string> codes = storedCodes(reply);
    require(codes.size() <= (size + 2) / 6, "a code takes six characters");
    for (const std::string& code : codes) {
        require(code.size() >= 2 && code.size() <= 5, "a code has a prefix and at most three characters");
        require(std::string_view("PCBU").find(code[0]) != std::string_view::npos,
                "a code begins with its system");
        require(code[1] >= '0' && code[1] <= '3', "a digit follows");
        require(code != "P0000", "no code is not listed");
        require(reply.find(code.substr(2, 1)) != std::string_view::npos,
                "a code's characters come from the reply");
    }
    return 0;
}
