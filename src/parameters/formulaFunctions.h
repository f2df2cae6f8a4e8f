#pragma once

#include <cstddef>
#include <span>
#include <stdexcept>
#include <string_view>
#include <variant>

/// What formulas of own parameters can compute. Names are in small letters.
namespace zint {

/// A value that can't be computed. The text tells why.
class NoValue : public std::domain_error {
public:
    using std::domain_error::domain_error;
};

using OneArgument = double (*)(double);
using TwoArguments = double (*)(double, double);
using ManyArguments = double (*)(const double*, int);

/// @throws NoValue when it is called with arguments that have no result
struct FormulaFunction {
    std::string_view name;
    std::variant<OneArgument, TwoArguments, ManyArguments> compute;

    std::size_t fewestArguments() const { return compute.index() == 0 ? 1 : 2; }
    bool takesMore() const { return compute.index() == 2; }
};

/// An operator between two values. @throws NoValue as above
struct FormulaOperator {
    std::string_view sign;
    TwoArguments compute;
    int rank; ///< one of a higher rank comes first
    bool isRightToLeft = false;
};

inline constexpr int signRank = 10; ///< of a minus in front of a value: -A^2 is -(A^2)

std::span<const FormulaFunction> formulaFunctions();
std::span<const FormulaOperator> formulaOperators();

/// Null for a name that is none. @param name in small letters
const FormulaFunction* findFunction(std::string_view name);

/// The longest operator that a text begins with; null where there is none.
const FormulaOperator* operatorAt(std::string_view text);

} // namespace zint
