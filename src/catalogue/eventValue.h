#pragma once

#include "catalogue/conversion.h"
#include "catalogue/design.h"

#include <optional>
#include <string>
#include <string_view>

/// What the values of an event read as.
///
/// A value is what the sample store keeps: the raw number for the conversions of ConversionTable, otherwise
/// the number in the parameter's own or metric unit, or the one that stands for words.
namespace zint {

/// Whether the store keeps the numbers of the reply as they were sent, as for the conversions of the table.
inline bool keepsRawValues(std::int32_t conversion) { return conversion < 1000; }

/// Whether a number can be a value of the event: one that is finite, and of 32 bits where it is raw.
bool isValueOf(const DesignEntry& event, double number);

/// @throws RunTimeError 6 where convert() throws it, and for a value that is no raw number but should be
converted::Value convertedValue(const DesignEntry& event, double value);

/// The value without its unit, behind a text, which stays as it was when this throws.
/// @throws RunTimeError as convertedValue()
void appendEventValue(std::string& text, const DesignEntry& event, double value);

/// The unit as it follows the value at once, such as "mph"; empty for what has none.
std::string_view unitOf(const DesignEntry& event);

/// The same without the blanks that part some units from their values, and empty where those are all.
std::string_view unitNameOf(const DesignEntry& event);

/// The value directly followed by its unit. @throws RunTimeError as convertedValue()
std::string displayText(const DesignEntry& event, double value);

/// displayText(), or the fault's text in place of a value that can't be shown.
std::string shownText(const DesignEntry& event, double value);

/// The value as a number, for drawing and averaging; nothing where the conversion shows no number, or where
/// convertedValue() throws. Words are drawn as what stands for them.
std::optional<double> drawnNumber(const DesignEntry& event, double value);

/// Whether the values of an event stand for words.
bool hasWords(const DesignEntry& event);

/// Whether the values of an event can be drawn at all.
inline bool isDrawn(const DesignEntry& event) { return drawnNumber(event, 0).has_value(); }

} // namespace zint
