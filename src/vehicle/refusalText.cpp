#include "vehicle/refusalText.h"

#include "shared/module1.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace zint {
namespace {

struct Refusal {
    std::uint8_t code;
    std::string_view text;
};

constexpr auto refusals = std::to_array<Refusal>({
    {0x10, "refused without a reason"},
    {0x11, "service not supported"},
    {0x12, "not supported, or the request has a wrong form"},
    {0x13, "the request has a wrong length or form"},
    {0x21, "busy, ask again"},
    {0x22, "refused for now: conditions are not right"},
    {0x24, "refused: requests in a wrong order"},
    {0x31, "not supported: value out of range"},
    {0x33, "refused: access must be unlocked first"},
    {0x35, "refused: wrong key"},
    {0x36, "refused: too many tries"},
    {0x37, "refused: a waiting time is not over"},
    {0x78, "busy: the answer follows"},
    {0x7E, "not available in this diagnostic mode"},
    {0x7F, "service not available in this diagnostic mode"},
    {0x81, "refused for now: engine speed too high"},
    {0x82, "refused for now: engine speed too low"},
    {0x83, "refused for now: the engine is running"},
    {0x84, "refused for now: the engine is not running"},
    {0x85, "refused for now: the engine has not run long enough"},
    {0x86, "refused for now: temperature too high"},
    {0x87, "refused for now: temperature too low"},
    {0x88, "refused for now: vehicle speed too high"},
    {0x89, "refused for now: vehicle speed too low"},
    {0x8A, "refused for now: throttle or pedal too high"},
    {0x8B, "refused for now: throttle or pedal too low"},
    {0x8C, "refused for now: the transmission is not in neutral"},
    {0x8D, "refused for now: the transmission is not in gear"},
    {0x8F, "refused for now: the brake is not pressed"},
    {0x90, "refused for now: the selector is not in park"},
    {0x91, "refused for now: the torque converter is locked"},
    {0x92, "refused for now: voltage too high"},
    {0x93, "refused for now: voltage too low"},
});

} // namespace

std::string refusalText(std::uint8_t code)
{
    const auto* const refusal = std::ranges::find(refusals, code, &Refusal::code);
    const std::string_view text = refusal != refusals.end() ? refusal->text : "refused";
    return std::string(text) + " (" + hexText(code, 2) + ")";
}

} // namespace zint
