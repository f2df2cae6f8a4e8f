#include "parameters/formulaFunctions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <string>

namespace zint {
namespace {

/// An infinite value must not go on: 1 divided by it would be a number again.
double real(double x)
{
    if (!std::isfinite(x))
        throw NoValue("no number");
    return x;
}

double quotient(double a, double b, double (*divide)(double, double))
{
    if (b == 0)
        throw NoValue("division by zero");
    return real(divide(a, b));
}

/// The whole part of a value, as far as a double holds every whole number.
std::int64_t whole(double x)
{
    constexpr double most = 9007199254740992;
    if (!(std::abs(x) <= most))
        throw NoValue("a number is too large for its bits");
    return static_cast<std::int64_t>(x);
}

double shifted(double x, double places)
{
    constexpr double most = 52;
    if (!(std::abs(places) <= most))
        throw NoValue("a shift by more than 52 bits");
    return real(std::floor(std::ldexp(static_cast<double>(whole(x)), static_cast<int>(places))));
}

/// A value of so many bits in two's complement. What has more bits would be read wrong.
template <int bits>
double twosComplement(double x)
{
    constexpr auto end = static_cast<double>(std::int64_t{1} << bits);
    if (!(x >= 0 && x < end))
        throw NoValue("signed" + (bits == 8 ? "" : std::to_string(bits)) + "() of more than " +
                      (bits == 8 ? "one byte" : std::to_string(bits / 8) + " bytes"));
    return x < end / 2 ? x : x - end;
}

double bitOf(double x, double place)
{
    return static_cast<double>(
        static_cast<std::uint64_t>(whole(x)) >> static_cast<unsigned>(whole(place) & 63) & 1U);
}

double inOrder(const double* values, int count, double (*take)(double, double))
{
    const std::span all(values, static_cast<std::size_t>(count));
    return std::accumulate(all.begin() + 1, all.end(), all.front(), take);
}

template <double (*compute)(double)>
double checked(double x)
{
    return real(compute(x));
}

// clang-format off
constexpr std::array functions = {
    FormulaFunction{"abs", checked<std::abs>},
    FormulaFunction{"and", +[](double a, double b) { return static_cast<double>(whole(a) & whole(b)); }},
    FormulaFunction{"atan", checked<std::atan>},
    FormulaFunction{"bit", bitOf},
    FormulaFunction{"ceil", checked<std::ceil>},
    FormulaFunction{"cos", checked<std::cos>},
    FormulaFunction{"exp", checked<std::exp>},
    FormulaFunction{"floor", checked<std::floor>},
    FormulaFunction{"int", checked<std::trunc>},
    FormulaFunction{"ln", checked<std::log>},
    FormulaFunction{"log", checked<std::log>},
    FormulaFunction{"log10", checked<std::log10>},
    FormulaFunction{"max", +[](const double* values, int count) {
        return inOrder(values, count, [](double a, double b) { return std::max(a, b); });
    }},
    FormulaFunction{"min", +[](const double* values, int count) {
        return inOrder(values, count, [](double a, double b) { return std::min(a, b); });
    }},
    FormulaFunction{"mod", +[](double a, double b) { return quotient(a, b, std::fmod); }},
    FormulaFunction{"or", +[](double a, double b) { return static_cast<double>(whole(a) | whole(b)); }},
    FormulaFunction{"pow", +[](double a, double b) { return real(std::pow(a, b)); }},
    FormulaFunction{"round", checked<std::round>},
    FormulaFunction{"shl", shifted},
    FormulaFunction{"shr", +[](double x, double places) { return shifted(x, -places); }},
    FormulaFunction{"signed", twosComplement<8>},
    FormulaFunction{"signed16", twosComplement<16>},
    FormulaFunction{"signed24", twosComplement<24>},
    FormulaFunction{"signed32", twosComplement<32>},
    FormulaFunction{"sin", checked<std::sin>},
    FormulaFunction{"sqrt", checked<std::sqrt>},
    FormulaFunction{"tan", checked<std::tan>},
    FormulaFunction{"xor", +[](double a, double b) { return static_cast<double>(whole(a) ^ whole(b)); }},
};

// The ranks are those of the language C.
constexpr std::array operators = {
    FormulaOperator{"||", [](double a, double b) { return a != 0 || b != 0 ? 1.0 : 0.0; }, 1},
    FormulaOperator{"&&", [](double a, double b) { return a != 0 && b != 0 ? 1.0 : 0.0; }, 2},
    FormulaOperator{"|", [](double a, double b) { return static_cast<double>(whole(a) | whole(b)); }, 3},
    FormulaOperator{"&", [](double a, double b) { return static_cast<double>(whole(a) & whole(b)); }, 4},
    FormulaOperator{"==", [](double a, double b) { return a == b ? 1.0 : 0.0; }, 5},
    FormulaOperator{"!=", [](double a, double b) { return a != b ? 1.0 : 0.0; }, 5},
    FormulaOperator{"<=", [](double a, double b) { return a <= b ? 1.0 : 0.0; }, 6},
    FormulaOperator{">=", [](double a, double b) { return a >= b ? 1.0 : 0.0; }, 6},
    FormulaOperator{"<", [](double a, double b) { return a < b ? 1.0 : 0.0; }, 6},
    FormulaOperator{">", [](double a, double b) { return a > b ? 1.0 : 0.0; }, 6},
    FormulaOperator{"<<", shifted, 7},
    FormulaOperator{">>", [](double x, double places) { return shifted(x, -places); }, 7},
    FormulaOperator{"+", [](double a, double b) { return real(a + b); }, 8},
    FormulaOperator{"-", [](double a, double b) { return real(a - b); }, 8},
    FormulaOperator{"*", [](double a, double b) { return real(a * b); }, 9},
    FormulaOperator{"/", [](double a, double b) {
        return quotient(a, b, [](double x, double y) { return x / y; });
    }, 9},
    FormulaOperator{"%", [](double a, double b) { return quotient(a, b, std::fmod); }, 9},
    FormulaOperator{"^", [](double a, double b) { return real(std::pow(a, b)); }, 11, true},
};
// clang-format on

} // namespace

std::span<const FormulaFunction> formulaFunctions() { return functions; }
std::span<const FormulaOperator> formulaOperators() { return operators; }

const FormulaFunction* findFunction(std::string_view name)
{
    const auto* const found = std::ranges::find(functions, name, &FormulaFunction::name);
    return found == functions.end() ? nullptr : found;
}

const FormulaOperator* operatorAt(std::string_view text)
{
    const FormulaOperator* longest = nullptr;
    for (const FormulaOperator& row : operators) {
        if (text.starts_with(row.sign) && (longest == nullptr || longest->sign.size() < row.sign.size()))
            longest = &row;
    }
    return longest;
}

} // namespace zint
