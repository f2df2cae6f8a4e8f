#pragma once

#include "catalogue/ownParameter.h"
#include "parameters/parameterRules.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zint {

using OwnParameterPointer = std::shared_ptr<const OwnParameter>;

/// A parameter that was stored, or why it was not.
struct StoredParameter {
    OwnParameterPointer parameter;       ///< null: it was not
    std::optional<ParameterFault> fault; ///< why
};

/// The table of own parameters. Each has a number of its own, which no other one gets after it, and a name,
/// in which small letters and capitals are alike.
class OwnParameters {
public:
    static constexpr std::int32_t lastNumber = 2'000'000'000; ///< that a parameter can have

    /// In the order in which they came.
    const std::vector<OwnParameterPointer>& all() const { return parameters_; }

    OwnParameterPointer find(std::int32_t number) const; ///< null: there is none
    OwnParameterPointer findName(std::string_view name) const;

    /// What is wrong with a parameter; the one of its number has its name, if any, itself.
    std::optional<ParameterFault> faultOf(const OwnParameter& parameter) const;

    /// Adds a parameter, in the form that normalised() gives it. With a number of the table it takes that
    /// one's place; with number 0 it gets the next one, with another one it keeps it.
    StoredParameter put(OwnParameter parameter);

    bool remove(std::int32_t number); ///< @return whether there was one

    /// A name that is free: the name itself, or with a number behind it.
    std::string freeName(const std::string& name) const;

    std::int32_t nextNumber() const { return next_; }

    /// @param number up to which all have been given away; a smaller one than the next changes nothing
    void keepNumbersFrom(std::int32_t number);

    /// What the file said of a parameter beyond what is known here, as JSON; kept for the next saving.
    struct Foreign {
        std::int32_t number;
        std::string json;
    };
    std::vector<Foreign> foreign;

private:
    std::vector<OwnParameterPointer>::const_iterator place(std::int32_t number) const;

    std::vector<OwnParameterPointer> parameters_;
    std::int32_t next_ = OwnParameter::firstNumber;
};

} // namespace zint
