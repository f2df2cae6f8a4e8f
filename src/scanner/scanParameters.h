#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zint {

/// What the scanner's boxes hold, by their names.
struct ScanParameters {
    /// Asks all control units for emission data; every adapter uses it after a reset.
    static constexpr const char* functionalHeader = "686AF1";

    /// The mode whose requests clear trouble codes and test results.
    static constexpr std::int32_t erasingMode = 4;

    std::string cmdHead = functionalHeader; ///< three bytes as six hexadecimal digits
    std::string modeStart = "01";           ///< one or two hexadecimal digits, as modeStop
    std::string modeStop = "01";
    std::string pidStart = "00"; ///< none to four hexadecimal digits, as pidStop
    std::string pidStop = "1F";
    std::string cmdSuffix; ///< none to two hexadecimal digits, behind every request

    /// Whether mode 04 is passed over: with the functional header it would erase data in all control units.
    bool skipsErasingMode() const { return cmdHead == functionalHeader; }
};

/// What became of a box that the user has left.
struct CheckedBox {
    std::string text;      ///< in capitals; the box's default when what stood there was refused
    std::string complaint; ///< for the status; empty when the text was accepted
};

CheckedBox checkHeader(std::string_view text); ///< takes any six printable ASCII characters
CheckedBox checkMode(std::string_view text);
CheckedBox checkPid(std::string_view text);    ///< an empty text is refused as well, and stays empty
CheckedBox checkSuffix(std::string_view text); ///< as checkPid()

/// The number of a box or of a part of a reply; -1 for what is no hexadecimal number or needs more than
/// 31 bits.
std::int32_t scanNumber(std::string_view text);

/// Whether a scan of these boxes sends mode 04, which erases trouble codes and test results in the vehicle.
bool erasesData(const ScanParameters& boxes);

/// What the user is told then.
inline constexpr const char* erasesDataText =
    "This scan sends mode 04, which erases the trouble codes and test results in the vehicle.";

} // namespace zint
