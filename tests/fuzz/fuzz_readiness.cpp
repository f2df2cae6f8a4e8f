// Arbitrary replies to "0101".

#include "codes/readiness.h"
#include "fuzz/fuzzInput.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace zint;
    const ReadinessTexts names = initialReadiness();
    const ReadinessTexts texts = readinessReport(asText(data, size));
    const auto isInputError = [&](std::size_t i) { return texts[i].ends_with(" input error"); };
    for (std::size_t i = 0; i < texts.size(); ++i) {
        require(texts[i].starts_with(i == 2 ? "Component" : names[i]), "a line begins with its monitor");
        require(isInputError(i) != (texts[i].find(" Test ") != std::string::npos), "a result follows");
        require(isInputError(i) == isInputError(i < 3 ? 0 : 3), "the monitors of a value share its error");
    }
    return 0;
}
