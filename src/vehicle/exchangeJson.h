#pragma once

#include "vehicle/unitReading.h"

#include <nlohmann/json_fwd.hpp>

namespace zint {

/// What an error is called in JSON: "noData"; empty for none.
std::string_view errorName(ReplyError error);

/// What a parameter tells: {"value", "unit"}; words are a value without a unit. Several fields stand in
/// "fields", and the first number of them, or else the first words, is the value.
nlohmann::ordered_json valuesJson(const std::vector<ParameterValue>& values);

/// What a unit has told: {"mil", "readiness", "values", ...}. What was not told is left out.
nlohmann::ordered_json unitJson(const UnitReading& unit);

/// An exchange: {"command", "error", "units": {"7E8": {...}}}. What was not told is left out.
nlohmann::ordered_json exchangeJson(const ExchangeReading& exchange);

/// {"exchanges": [...]}, as text.
std::string exchangesJson(const std::vector<ExchangeReading>& exchanges);

/// The same for reading: a line for each exchange, and below it one for each control unit.
std::string exchangesText(const std::vector<ExchangeReading>& exchanges);

} // namespace zint
