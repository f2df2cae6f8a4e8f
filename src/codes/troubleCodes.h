#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The reply to "03", stored trouble codes.
namespace zint {

/// The codes of the reply's first line, such as "P0133" (letters by SAE J2012), in the order sent; "P0000",
/// which fills a line up, is left out.
///
/// The reply is read in the layout of J1850, ISO 9141 and KWP vehicles: "43 ", then three codes of two bytes,
/// six characters each. Further lines fall between the steps and list nothing. Both are kept on purpose.
std::vector<std::string> storedCodes(std::string_view reply);

} // namespace zint
