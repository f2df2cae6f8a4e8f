#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace zint {

/// What the header calculator's window shows, by the names of its controls.
struct CalcHdrPanel {
    /// The bits of the first byte, each half from its least significant bit on, as hexToBits() writes them:
    ///
    ///     bit   7  6  5     4      3         2           1  0
    ///     box   3  2  1     0      7         6           5  4
    ///           priority    style  response  addressing  message type
    std::array<bool, 8> optBit{};
    std::string prioVal; ///< what boxes 3, 2 and 1 make together
    std::string hdrOpt;
    std::string targetFrame; ///< the frame's caption
    std::string hdrTarget;
    bool hdrTargetEnabled = false;
    std::string hdrSource;
};

/// Splits the header of a request into its fields and puts it together again. The bytes are those of J1850:
///
///     68  6A  F1
///     |   |   source
///     |   target
///     priority, type and addressing
class HeaderCalculator {
public:
    static constexpr std::size_t addressingBox = 6; ///< clear: functional, checked: physical

    /// @param header the scanner's box as it is; when that would be refused, the default takes its place
    explicit HeaderCalculator(std::string_view header);

    void clickOptBit(std::size_t box, bool isChecked); ///< the user clicked a box

    // The user left a box that contains the text. An invalid text is replaced by a valid one.
    void leavePrioVal(std::string_view text);
    void leaveHdrTarget(std::string_view text);
    void leaveHdrSource(std::string_view text);

    std::string header() const { return panel_.hdrOpt + panel_.hdrTarget + panel_.hdrSource; }

    const CalcHdrPanel& panel() const { return panel_; }

private:
    void address(bool isPhysical);
    void recompose();

    CalcHdrPanel panel_;
};

/// A part of the physical addresses, for the user to look up.
struct AddressRange {
    std::string_view addresses;
    std::string_view system;
};

inline constexpr std::array<AddressRange, 14> physicalAddresses{{
    {"10-17", "Engine"},
    {"18-1F", "Transmission"},
    {"28-2F", "Brake"},
    {"30-37", "Steering"},
    {"38-3F", "Suspension"},
    {"48-5F", "Restraints"},
    {"60-6F", "Driver Info"},
    {"70-7F", "Lighting"},
    {"80-8F", "Entertainment"},
    {"90-9F", "Comfort"},
    {"98-9F", "HVAC"},
    {"A0-BF", "convenience"},
    {"C0-C7", "Security"},
    {"F1-FD", "Off-board test equipment"},
}};

} // namespace zint
