// Arbitrary replies to "0101".

#include "codes/readiness.h"
#include "fuzz/fuzzInput.h"

#include <algorithm>

namespace zint {
namespace {

constexpr std::array<std::string_view, 4> results = {" input error", " Test Unsupported", " Test Incomplete",
                                                     " Test OK"};

bool isInputError(const std::string& text)
{
    return text.ends_with(results[0]);
}

} // namespace
} // namespace zint

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace zint;
    const ReadinessTexts names = initialReadiness();
    const ReadinessTexts texts = readinessReport(FuzzInput(data, size).rest());
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const std::string name = i == 2 ? "Component" : names[i];
        require(std::ranges::any_of(
                    results, [&](std::string_view result) { return texts[i] == name + std::string(result); }),
                "a line is a monitor's name and a result");
        require(isInputError(texts[i]) == isInputError(texts[i < 3 ? 0 : 3]),
                "the monitors of one value have the same error");
    }
    return 0;
}
