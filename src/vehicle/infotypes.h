#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zint {

/// How the content of an infotype of mode 09 is read.
enum class InfoForm {
    messageCount,
    vin,
    calibrationIds,
    cvns,
    sparkCounters,
    compressionCounters,
    ecuName,
    text,
    number,
};

/// An infotype that the standard defines.
struct Infotype {
    std::uint8_t id;
    std::string_view name;
    InfoForm form;
    std::size_t itemLength; ///< in bytes, where an answer may hold several; 0: one of any length
    std::size_t messages;   ///< of an item on the older buses, four bytes each; 0: any number
};

/// @return null for an infotype that the standard does not define
const Infotype* infotypeOf(std::uint8_t id);

/// An in-use counter in words: "Catalyst, bank 1" for "CATCOMP1". Both counters of a monitor have the same
/// words; one without words has its name.
std::string counterText(const std::string& counter);

} // namespace zint
