#include "parameters/ownParameters.h"

#include "shared/module1.h"

#include <algorithm>
#include <utility>

namespace zint {

std::vector<OwnParameterPointer>::const_iterator OwnParameters::place(std::int32_t number) const
{
    return std::ranges::find(parameters_, number,
                             [](const OwnParameterPointer& parameter) { return parameter->number; });
}

OwnParameterPointer OwnParameters::find(std::int32_t number) const
{
    const auto found = place(number);
    return found == parameters_.end() ? nullptr : *found;
}

OwnParameterPointer OwnParameters::findName(std::string_view name) const
{
    const std::string capitals = upperCase(name);
    const auto found = std::ranges::find_if(parameters_, [&](const OwnParameterPointer& parameter) {
        return parameter->name.size() == capitals.size() && upperCase(parameter->name) == capitals;
    });
    return found == parameters_.end() ? nullptr : *found;
}

std::optional<ParameterFault> OwnParameters::faultOf(const OwnParameter& parameter) const
{
    const OwnParameterPointer other = findName(parameter.name);
    if (other && other->number != parameter.number)
        return ParameterFault{ParameterField::name, 0, "there is another parameter of this name"};
    return zint::faultOf(parameter);
}

StoredParameter OwnParameters::put(OwnParameter parameter)
{
    parameter = normalised(std::move(parameter));
    if (auto fault = faultOf(parameter))
        return {.parameter = nullptr, .fault = std::move(fault)};
    if (parameter.number == 0)
        parameter.number = next_;
    if (parameter.number < OwnParameter::firstNumber || parameter.number > lastNumber)
        return {.parameter = nullptr,
                .fault = ParameterFault{ParameterField::name, 0, "there is no such number"}};
    keepNumbersFrom(parameter.number + 1);
    const auto old = place(parameter.number);
    const auto stored = std::make_shared<const OwnParameter>(std::move(parameter));
    if (old == parameters_.end())
        parameters_.push_back(stored);
    else
        parameters_[static_cast<std::size_t>(old - parameters_.begin())] = stored;
    return {.parameter = stored, .fault = {}};
}

bool OwnParameters::remove(std::int32_t number)
{
    std::erase_if(foreign, [&](const Foreign& keys) { return keys.number == number; });
    return std::erase_if(parameters_, [&](const auto& parameter) { return parameter->number == number; }) > 0;
}

std::string OwnParameters::freeName(const std::string& name) const
{
    std::string free = name;
    for (int i = 2; findName(free); ++i)
        free = name + " " + std::to_string(i);
    return free;
}

void OwnParameters::keepNumbersFrom(std::int32_t number) { next_ = std::max(next_, number); }

} // namespace zint
