#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zint {

/// What the scanner says of a reply.
struct ScanReply {
    enum class Kind : char { valid = 'V', invalid = 'X', noData = 'N' };

    Kind kind = Kind::invalid;
    std::string data;  ///< the first line; of a valid reply what follows the prefix
    double value = 0;  ///< of a valid reply: its data bytes as one number, the first one the highest
    std::string ascii; ///< of a valid reply: its data bytes as characters, "." for what is none
};

/// @param reply complete, with its prompt. @param expectedPrefix what a positive reply begins with
ScanReply classify(std::string_view reply, std::string_view expectedPrefix);

/// Which replies are listed.
enum class ScanFilter { all, valid, validNonZero, exceptNoData };

bool isListed(const ScanReply& reply, ScanFilter filter);

/// A number of data bytes in decimal, without an exponent; exact up to 15 digits.
std::string decimalText(double value);

} // namespace zint
