#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zint {

/// What a monitor of mode 06 on CAN watches: "Catalyst bank 1"; empty for one of the maker's.
/// @param hasCylinders15And16 B0 and B1 are those; else, as in most tables, particulate filters
std::string monitorName(std::uint8_t mid, bool hasCylinders15And16 = false);

/// What a standard test measures: "Rich to lean threshold voltage"; empty for one of the maker's.
std::string_view testName(std::uint8_t tid);

/// The oxygen sensor that a bit of parameter 13, or of 1D, stands for: "O2 sensor bank 1 sensor 2".
/// @param location one bit is set; else it is shown as it is
std::string sensorName(std::uint8_t location, bool hasFourBanks);

} // namespace zint
