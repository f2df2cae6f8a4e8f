#pragma once

#include "parameters/formulaText.h"
#include "vehicle/bytes.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zint {

/// What a formula gives.
struct FormulaResult {
    std::optional<double> number; ///< finite
    std::string why; ///< there is none: "division by zero", "no number", "the reply has no byte D"
};

/// A formula over the data bytes of a reply, such as "(A*256+B)/4". It is compiled once and computed often.
///
/// A, B, ... Z, AA, ... IV are the bytes, {A:3} is a bit of one, 0 the lowest. Operators and functions stand
/// in the tables of formulaFunctions.
class Formula {
public:
    explicit Formula(std::string_view text);
    ~Formula();
    Formula(Formula&& other) noexcept;
    Formula& operator=(Formula&& other) noexcept;

    /// What is wrong with the text; nothing for a formula that can be computed.
    const std::optional<FormulaFault>& fault() const { return fault_; }

    /// How many data bytes a reply must have; 0 for a formula without bytes.
    std::size_t bytesNeeded() const;

    /// The value for the data bytes of a reply; a faulty formula gives none. Never throws. Not to be called
    /// from two threads at a time.
    FormulaResult evaluate(BytesView data) const;

private:
    struct Compiled;

    std::optional<FormulaFault> fault_;
    std::unique_ptr<Compiled> compiled_; ///< null for a faulty formula
};

} // namespace zint
