#pragma once

#include <string>
#include <string_view>

/// The reply to "0100", which PIDs of mode 01 the vehicle supports.
namespace zint {

/// Whether a reply holds the supported PIDs at all.
bool isSupportReply(std::string_view reply);

/// The hexadecimal text of the four data bytes: what stands behind "41 00 " in the first line.
std::string_view supportData(std::string_view reply);

/// Whether the vehicle says that it does not support a request. Requests of other modes, and PIDs beyond
/// those that the reply tells of, count as supported.
///
/// The bits are looked up in hexToBits() order, from PID 00 on. That is not the order of the standard;
/// designs made with this program rely on it.
/// @param bits hexToBits() of the data
bool isUnsupported(std::string_view requestCode, std::string_view bits);

} // namespace zint
