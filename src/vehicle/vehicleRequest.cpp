#include "vehicle/vehicleRequest.h"

#include "vehicle/adapterLines.h"

#include <algorithm>
#include <array>

namespace zint {
namespace {

constexpr std::uint8_t answerBit = 0x40;
constexpr std::size_t mostFrameBytes = 7;

struct Repetition {
    std::uint8_t service;
    std::size_t bytes; ///< of each parameter, which the answer repeats behind the service
};

constexpr std::array repetitions = {
    Repetition{0x01, 1}, Repetition{0x02, 2}, Repetition{0x05, 2}, Repetition{0x06, 1}, Repetition{0x08, 1},
    Repetition{0x09, 1}, Repetition{0x1A, 1}, Repetition{0x21, 1}, Repetition{0x22, 2},
};

std::size_t repeatedBytes(std::uint8_t service)
{
    const auto* const row = std::ranges::find(repetitions, service, &Repetition::service);
    return row == repetitions.end() ? 0 : row->bytes;
}

} // namespace

VehicleRequest::VehicleRequest(std::string_view text)
{
    if (text.find_first_not_of(" \r\n") == std::string_view::npos)
        return;
    const std::optional<HexLine> line = hexLine(text);
    isForVehicle_ = line && !line->index && line->digits.size() > 1;
    if (!isForVehicle_)
        return;
    bytes_ = line->bytesFrom(0);
}

bool VehicleRequest::isAnsweredBy(BytesView message, bool isCut) const
{
    if (message.empty())
        return isCut;
    if (bytes_.empty())
        return (message[0] & answerBit) != 0;
    if (message[0] == refusalSign)
        return message.size() > 1 ? message[1] == bytes_[0] : isCut;
    return message[0] == (bytes_[0] | answerBit) && hasAsked(message.subspan(1), isCut);
}

bool VehicleRequest::hasAsked(BytesView message, bool isCut) const
{
    const std::size_t width = repeatedBytes(bytes_[0]);
    if (width == 0 || bytes_.size() == 1)
        return true;
    for (std::size_t i = 1; i < bytes_.size(); i += width) {
        const BytesView asked = BytesView(bytes_).subspan(i, std::min(width, bytes_.size() - i));
        const std::size_t compared = isCut ? std::min(asked.size(), message.size()) : asked.size();
        if (message.size() >= compared && std::ranges::equal(asked.first(compared), message.first(compared)))
            return true;
    }
    return false;
}

std::size_t VehicleRequest::repeatedIn(BytesView answer) const
{
    const BytesView asked = bytes_.empty() ? BytesView() : BytesView(bytes_).subspan(1);
    const std::size_t width = bytes_.empty() ? 0 : repeatedBytes(bytes_[0]);
    const bool isWhole =
        answer.size() > asked.size() && std::ranges::equal(asked, answer.subspan(1, asked.size()));
    return std::min(answer.size(), 1 + (width == 0 && isWhole ? asked.size() : width));
}

std::optional<VehicleRequest> VehicleRequest::withoutLength() const
{
    if (bytes_.empty() || bytes_[0] == 0 || bytes_[0] > mostFrameBytes || bytes_[0] >= bytes_.size())
        return std::nullopt;
    // Of two bytes, the second is a parameter: "0103" asks for parameter 03, not for codes.
    if (bytes_.size() != mostFrameBytes + 1 && (bytes_.size() == 2 || bytes_.size() != bytes_[0] + 1U))
        return std::nullopt;
    VehicleRequest request;
    request.bytes_.assign(bytes_.begin() + 1, bytes_.begin() + 1 + bytes_[0]);
    return request;
}

} // namespace zint
