#pragma once

#include "catalogue/ownParameter.h"
#include "parameters/formula.h"
#include "vehicle/busProtocol.h"
#include "vehicle/bytes.h"

#include <string>
#include <string_view>

/// What comes back for an own parameter.
namespace zint {

/// The data bytes of a reply, or why there are none.
struct ReplyData {
    Bytes bytes;     ///< A, B, ...
    std::string why; ///< empty: these are the bytes
};

/// The data behind the repeated request in the first answer of a reply; of the unit of the filter where one
/// is told and has answered.
ReplyData replyData(const OwnParameter& parameter, std::string_view reply, BusProtocol protocol);

/// The value as text with up to ten digits, and its unit: "82.5 °C".
std::string valueText(const OwnParameter& parameter, double value);

/// What a typed reply comes to.
struct Tried {
    Bytes data;                   ///< A, B, ...
    std::optional<double> number; ///< nothing: the text says why
    std::string text;             ///< "82.5 °C", or what is wrong
    bool isOutside = false;       ///< the value lies outside of the parameter's range
};

/// Computes the value of a reply as a user types or pastes it: with or without echo, blanks, headers and
/// prompt, in one line or several; or of the data bytes alone, which
/// are the only ones without a request.
Tried tryOut(const OwnParameter& parameter, std::string_view reply);

} // namespace zint
