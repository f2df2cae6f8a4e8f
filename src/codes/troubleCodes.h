#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The reply to "03", stored trouble codes.
namespace zint {

/// What fills a line up where there is no further code.
inline constexpr std::string_view noTroubleCode = "P0000";

/// The codes of the reply's first line in the order sent; "P0000" is left out.
///
/// The reply is read in the layout of J1850, ISO 9141 and KWP vehicles: "43 ", then three codes of two bytes,
/// six characters each. Further lines fall between the steps and list nothing. Both are kept on purpose.
std::vector<std::string> storedCodes(std::string_view reply);

/// How many codes storedCodes() lists from a reply of that layout; what it makes of other replies and of
/// damaged bytes is no code.
int listedCodeCount(std::string_view reply);

/// How many codes all lines of a reply of that layout hold; several control units may have answered.
int storedCodeCount(std::string_view reply);

} // namespace zint
