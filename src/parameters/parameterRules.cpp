#include "parameters/parameterRules.h"

#include "parameters/formula.h"
#include "shared/module1.h"
#include "shared/utf8.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>
#include <string_view>

namespace zint {
namespace {

using Fault = std::optional<ParameterFault>;

constexpr std::string_view blanks = " \t\r\n";

struct TextField {
    ParameterField field;
    std::string OwnParameter::*text;
    const char* name;
    bool isHexadecimal;
};

constexpr std::array textFields = {
    TextField{ParameterField::name, &OwnParameter::name, "name", false},
    TextField{ParameterField::shortName, &OwnParameter::shortName, "short name", false},
    TextField{ParameterField::request, &OwnParameter::request, "request", true},
    TextField{ParameterField::header, &OwnParameter::header, "header", true},
    TextField{ParameterField::filter, &OwnParameter::filter, "filter", true},
    TextField{ParameterField::formula, &OwnParameter::formula, "formula", false},
    TextField{ParameterField::unit, &OwnParameter::unit, "unit", false},
};

std::string hexadecimal(std::string_view text)
{
    std::string digits = upperCase(text);
    for (auto place = digits.find("0X"); place != std::string::npos; place = digits.find("0X", place))
        digits.erase(place, 2);
    std::erase_if(digits, [](char c) { return blanks.find(c) != std::string_view::npos; });
    return digits;
}

std::size_t firstNoDigit(const std::string& text)
{
    return std::min(text.find_first_not_of("0123456789ABCDEF"), text.size());
}

/// Designs are files of lines, and "|" parts their fields.
Fault faultOfWords(const TextField& row, const std::string& text)
{
    for (std::size_t i = 0; i < text.size() && row.field != ParameterField::formula; ++i) {
        const bool isControl = (text[i] >= 0 && text[i] < ' ') || text[i] == '\x7F';
        if (isControl || text[i] == '|')
            return ParameterFault{row.field, i,
                                  isControl ? "this is no text" : "\"|\" can't stand in a design"};
    }
    return std::nullopt;
}

Fault faultOfRequest(const std::string& request)
{
    constexpr std::size_t mostDigits = 14; // what fits one frame of the bus
    if (const std::size_t place = firstNoDigit(request); place < request.size())
        return ParameterFault{ParameterField::request, place,
                              "the request must be hexadecimal, such as 221940"};
    if (request.empty())
        return ParameterFault{ParameterField::request, 0, "the request is missing"};
    if (request.size() % 2 != 0)
        return ParameterFault{ParameterField::request, request.size(),
                              "a digit is missing: each byte of the request has two"};
    if (request.size() > mostDigits)
        return ParameterFault{ParameterField::request, mostDigits, "a request has at most 7 bytes"};
    return std::nullopt;
}

Fault faultOfAddress(ParameterField field, const std::string& address)
{
    constexpr std::array<std::size_t, 4> lengths = {0, 3, 6, 8};
    if (const std::size_t place = firstNoDigit(address); place < address.size())
        return ParameterFault{field, place, "it must be hexadecimal, such as 7E0"};
    if (std::ranges::find(lengths, address.size()) == lengths.end())
        return ParameterFault{field, address.size(), "it has 3, 6 or 8 digits, or none"};
    return std::nullopt;
}

Fault faultOfFormula(const std::string& text)
{
    const Formula formula(text);
    if (!formula.fault())
        return std::nullopt;
    return ParameterFault{ParameterField::formula, formula.fault()->position, formula.fault()->text};
}

Fault faultOfName(const std::string& name)
{
    return name.empty() ? Fault({ParameterField::name, 0, "the name is missing"}) : std::nullopt;
}

Fault faultOfRange(double minimum, double maximum)
{
    const bool isFinite = std::isfinite(minimum) && std::isfinite(maximum);
    return isFinite ? std::nullopt : Fault({ParameterField::range, 0, "the range has no end"});
}

} // namespace

std::string faultText(const ParameterFault& fault)
{
    if (fault.field == ParameterField::range)
        return fault.text;
    const auto* const row = std::ranges::find(textFields, fault.field, &TextField::field);
    return std::string(row->name) + ", at character " + std::to_string(fault.position + 1) + ": " +
           fault.text;
}

OwnParameter normalised(OwnParameter parameter)
{
    for (const TextField& row : textFields) {
        std::string& text = parameter.*row.text;
        text = toUtf8(row.isHexadecimal ? hexadecimal(text) : std::string(trimmed(text, blanks)));
    }
    if (!(parameter.maximum > parameter.minimum))
        parameter.minimum = parameter.maximum = 0;
    return parameter;
}

std::optional<ParameterFault> faultOf(const OwnParameter& parameter)
{
    for (const TextField& row : textFields) {
        if (auto fault = faultOfWords(row, parameter.*row.text))
            return fault;
    }
    for (Fault fault :
         {faultOfName(parameter.name), faultOfRequest(parameter.request),
          faultOfAddress(ParameterField::header, parameter.header),
          faultOfAddress(ParameterField::filter, parameter.filter), faultOfFormula(parameter.formula),
          faultOfRange(parameter.minimum, parameter.maximum)}) {
        if (fault)
            return fault;
    }
    return std::nullopt;
}

bool isSameButNumber(const OwnParameter& one, OwnParameter other)
{
    other.number = one.number;
    return one == other;
}

} // namespace zint
