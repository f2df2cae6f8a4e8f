// Arbitrary formulas over arbitrary bytes: what is read without a fault can be computed, a value is finite,
// and a fault lies within the text. Input: a byte with the number of data bytes, these, and the text.

#include "fuzz/fuzzInput.h"
#include "parameters/formula.h"

#include <algorithm>
#include <cmath>

namespace zint {

void fuzz(std::string_view input)
{
    if (input.empty())
        return;
    const std::size_t count = std::min<std::size_t>(byteAt(input, 0) % 8, input.size() - 1);
    const Bytes data(input.begin() + 1, input.begin() + 1 + static_cast<std::ptrdiff_t>(count));
    const std::string_view text = input.substr(1 + count);
    const FormulaText read = readFormula(text);
    const Formula formula(text);
    require(formula.fault() == read.fault, "what is read without a fault can be computed");
    require(!formula.fault() || formula.fault()->position <= text.size(), "a fault lies within the text");
    const FormulaResult result = formula.evaluate(data);
    require(result.number.has_value() == result.why.empty(), "there is a number, or a reason why not");
    require(!result.number || std::isfinite(*result.number), "a number is finite");
    require(!result.number || formula.bytesNeeded() <= data.size(), "all bytes were there");
    const FormulaResult again = formula.evaluate(data);
    require(again.number == result.number && again.why == result.why, "a formula remembers nothing");
}

} // namespace zint
