#include "parameters/formula.h"

#include "parameters/formulaFunctions.h"

#include <muParser.h>
#include <variant>
#include <vector>

namespace zint {

struct Formula::Compiled {
    explicit Compiled(const FormulaText& formula);

    std::vector<std::size_t> bytes; ///< that the formula uses, in their order
    std::vector<double> values;     ///< theirs
    mu::Parser parser;
};

/// The operators are those of the table alone: those of the library divide by zero without a word.
Formula::Compiled::Compiled(const FormulaText& formula)
    : bytes(formula.bytes.begin(), formula.bytes.end()), values(bytes.size(), 1)
{
    parser.EnableBuiltInOprt(false);
    parser.ClearFun();
    parser.ClearConst();
    parser.ClearInfixOprt();
    parser.DefineInfixOprt(
        "-", [](double x) { return -x; }, signRank, false);
    for (const FormulaOperator& row : formulaOperators())
        parser.DefineOprt(std::string(row.sign), row.compute, static_cast<unsigned>(row.rank),
                          row.isRightToLeft ? mu::oaRIGHT : mu::oaLEFT);
    for (const FormulaFunction& row : formulaFunctions())
        std::visit([&](auto compute) { parser.DefineFun(std::string(row.name), compute, false); },
                   row.compute);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        parser.DefineVar(byteName(bytes[i]), &values[i]);
    parser.SetExpr(formula.text);
    try {
        parser.Eval(); // the first time compiles
    } catch (const NoValue&) {
        // It is compiled; other values may give a number.
    }
}

Formula::Formula(std::string_view text)
{
    const FormulaText formula = readFormula(text);
    fault_ = formula.fault;
    if (fault_)
        return;
    try {
        compiled_ = std::make_unique<Compiled>(formula);
    } catch (const mu::ParserError& error) {
        fault_ = {.position = 0, .text = "it can't be computed: " + error.GetMsg()};
    }
}

Formula::~Formula() = default;
Formula::Formula(Formula&& other) noexcept = default;
Formula& Formula::operator=(Formula&& other) noexcept = default;

std::size_t Formula::bytesNeeded() const
{
    return compiled_ && !compiled_->bytes.empty() ? compiled_->bytes.back() + 1 : 0;
}

FormulaResult Formula::evaluate(BytesView data) const
{
    if (!compiled_)
        return {.number = {}, .why = fault_ ? fault_->text : "no formula"};
    for (std::size_t i = 0; i < compiled_->bytes.size(); ++i) {
        if (compiled_->bytes[i] >= data.size())
            return {.number = {}, .why = "the reply has no byte " + byteName(compiled_->bytes[i])};
        compiled_->values[i] = data[compiled_->bytes[i]];
    }
    try {
        return {.number = compiled_->parser.Eval() + 0.0, .why = {}}; // there is no -0
    } catch (const NoValue& reason) {
        return {.number = {}, .why = reason.what()};
    } catch (const mu::ParserError& error) {
        return {.number = {}, .why = error.GetMsg()};
    }
}

} // namespace zint
