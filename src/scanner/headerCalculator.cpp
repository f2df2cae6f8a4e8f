#include "scanner/headerCalculator.h"

#include "scanner/scanParameters.h"
#include "shared/module1.h"

#include <algorithm>
#include <cstdint>

namespace zint {
namespace {

constexpr int highestPriority = 7;
constexpr int largestByte = 255;

constexpr std::array<int, 8> weights{16, 32, 64, 128, 1, 2, 4, 8}; ///< of the boxes in the first byte
constexpr int priorityUnit = 32;                                   ///< the priority is bits 5 to 7
constexpr std::array<std::size_t, 3> priorityBoxes{1, 2, 3};

std::string usualTarget(bool isPhysical) { return isPhysical ? "10" : "6A"; }

/// A number above the highest priority is the highest, however many digits it has. @return negative for
/// whatever is no priority
std::int32_t priorityValue(std::string_view text)
{
    const bool isNumber =
        !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
    return std::min(integerIn(text).value_or(isNumber ? highestPriority : -1), highestPriority);
}

} // namespace

HeaderCalculator::HeaderCalculator(std::string_view header)
{
    const std::string text = checkHeader(header).text;
    panel_.hdrTarget = textAt(text, 3, 2);
    panel_.hdrSource = textAt(text, 5, 2);
    address(panel_.hdrTarget != usualTarget(false)); // whatever the first byte says of it

    const std::string bits = hexToBits(textAt(text, 1, 2)); // empty when the characters are no digits
    for (std::size_t box = 0; box < bits.size(); ++box)
        panel_.optBit.at(box) = bits[box] == '1';
    recompose();
}

void HeaderCalculator::clickOptBit(std::size_t box, bool isChecked)
{
    panel_.optBit.at(box) = isChecked;
    if (box == addressingBox) {
        address(isChecked);
        panel_.hdrTarget = usualTarget(isChecked);
    }
    recompose();
}

void HeaderCalculator::leavePrioVal(std::string_view text)
{
    if (const std::int32_t number = priorityValue(text); number >= 0) {
        for (const std::size_t box : priorityBoxes)
            panel_.optBit.at(box) = ((number * priorityUnit) & weights.at(box)) != 0;
    }
    recompose();
}

void HeaderCalculator::leaveHdrTarget(std::string_view text)
{
    const std::int32_t value = scanNumber(text);
    const bool isByte = value >= 1 && value <= largestByte;
    panel_.hdrTarget = isByte ? hexText(value, 2) : usualTarget(panel_.optBit.at(addressingBox));
}

void HeaderCalculator::leaveHdrSource(std::string_view text)
{
    const std::int32_t value = scanNumber(text);
    if (value >= 0 && value <= largestByte && text.find(' ') == std::string_view::npos)
        panel_.hdrSource = hexText(value, 2);
}

void HeaderCalculator::address(bool isPhysical)
{
    panel_.targetFrame = isPhysical ? "Target (physical)" : "Request (functional)";
    panel_.hdrTargetEnabled = isPhysical;
}

void HeaderCalculator::recompose()
{
    int value = 0;
    for (std::size_t box = 0; box < weights.size(); ++box)
        value += panel_.optBit.at(box) ? weights.at(box) : 0;
    panel_.prioVal = std::to_string(value / priorityUnit);
    panel_.hdrOpt = hexText(value, 2);
}

} // namespace zint
