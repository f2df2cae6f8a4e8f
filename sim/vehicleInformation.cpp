#include "sim/vehicleInformation.h"

#include "sim/supportBits.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

namespace zint {
namespace {

constexpr std::uint8_t answerMode = positiveAnswer(0x09);
constexpr std::size_t bytesPerMessage = 4; // before CAN

constexpr std::string_view vehicleNumber = "U9ZNTBD291Z000042";

/// The digit at position 9 of a vehicle identification number that guards the others against misreading.
constexpr char vehicleNumberCheck(std::string_view number)
{
    constexpr std::string_view letters = "ABCDEFGHJKLMNPRSTUVWXYZ";
    constexpr std::string_view values = "12345678123457923456789";
    constexpr std::array weights{8, 7, 6, 5, 4, 3, 2, 10, 0, 9, 8, 7, 6, 5, 4, 3, 2};
    int sum = 0;
    for (std::size_t i = 0; i < weights.size(); ++i) {
        const auto letter = letters.find(number[i]);
        sum += weights[i] * ((letter == std::string_view::npos ? number[i] : values[letter]) - '0');
    }
    return sum % 11 == 10 ? 'X' : static_cast<char>('0' + sum % 11);
}
static_assert(vehicleNumber.size() == 17 && vehicleNumber[8] == vehicleNumberCheck(vehicleNumber));

using namespace std::string_view_literals;

/// One type of information. What is no text is written as bytes all the same.
struct Information {
    UnitKinds units;
    std::uint8_t type;
    std::uint8_t itemCount;
    bool hasMessageCount; ///< before CAN: the type below it tells the number of its messages
    std::string_view data;
};

constexpr UnitKinds dieselOnly = only(UnitKind::diesel);
constexpr UnitKinds transmissionOnly = only(UnitKind::transmission);

// Of the counters each is two bytes: both general ones, then those of the monitors, how often done and
// possible.
constexpr std::array<Information, 13> informationTable{{
    {engines, 0x02, 1, true, vehicleNumber},
    {sparkEngines, 0x04, 2, true, "ZNT-ENG-4711-A\0\0ZNT-IGN-0815\0\0\0\0"sv},
    {dieselOnly, 0x04, 1, true, "ZNT-CDI-2209-C\0\0"sv},
    {transmissionOnly, 0x04, 1, true, "ZNT-GBX-0042\0\0\0\0"sv},
    {sparkEngines, 0x06, 2, true, "\x5A\x4E\x01\x17\x00\xC0\xFF\xEE"sv},
    {dieselOnly, 0x06, 1, true, "\x0D\x1E\x5E\x11"sv},
    {transmissionOnly, 0x06, 1, true, "\x17\x2A\x00\x9B"sv},
    {only(UnitKind::spark), 0x08, 0x10, true,
     "\x02\x1A\x03\x44\x01\x8E\x02\x1A\x00\x00\x00\x00\x01\xF0\x02\x1A\x00\x00\x00\x00\x01\x77\x02\x1A\x00"
     "\x00\x00\x00"
     "\x00\x3C\x00\xE1"sv},
    {newerSparkEngines, 0x08, 0x14, true,
     "\x02\x1A\x03\x44\x01\x8E\x02\x1A\x00\x00\x00\x00\x01\xF0\x02\x1A\x00\x00\x00\x00\x01\x77\x02\x1A\x00"
     "\x00\x00\x00"
     "\x00\x3C\x00\xE1\x01\x02\x02\x1A\x00\x00\x00\x00"sv},
    {dieselOnly, 0x0B, 0x12, false,
     "\x03\x10\x05\x22\x01\x01\x03\x10\x00\xA0\x03\x10\x00\x00\x00\x00\x00\x2B\x03\x10\x02\x00\x03\x10\x02"
     "\xC4\x03\x10"
     "\x02\xB0\x03\x10\x03\x11\x03\x10"sv},
    {sparkEngines, 0x0A, 1, true, "ECM\0-EngineControl\0\0"sv},
    {dieselOnly, 0x0A, 1, true, "ECM\0-DieselEngine\0\0\0"sv},
    {transmissionOnly, 0x0A, 1, true, "TCM\0-TransmisCtrl\0\0\0"sv},
}};

std::size_t messageCount(const Information& row)
{
    return (row.data.size() + bytesPerMessage - 1) / bytesPerMessage;
}

Messages bitmap(UnitKind unit, bool isCan)
{
    std::uint32_t bits = 0;
    for (const Information& row : informationTable) {
        if (!contains(row.units, unit))
            continue;
        bits |= supportBit(0, row.type);
        bits |= row.hasMessageCount && !isCan ? supportBit(0, row.type - 1) : 0;
    }
    Message message{answerMode, 0x00};
    if (!isCan)
        message.push_back(1);
    appendNumber(message, bits, 4);
    return {message};
}

Messages inOneMessage(const Information& row)
{
    Message message{answerMode, row.type, row.itemCount};
    message.insert(message.end(), row.data.begin(), row.data.end());
    return {message};
}

/// In short messages; zeros fill up the first one in front.
Messages inShortMessages(const Information& row)
{
    const std::size_t count = messageCount(row);
    Message bytes(count * bytesPerMessage - row.data.size(), 0);
    bytes.insert(bytes.end(), row.data.begin(), row.data.end());
    Messages messages;
    for (std::size_t i = 0; i < count; ++i) {
        Message message{answerMode, row.type, static_cast<std::uint8_t>(i + 1)};
        const MessageView part = MessageView(bytes).subspan(i * bytesPerMessage, bytesPerMessage);
        message.insert(message.end(), part.begin(), part.end());
        messages.push_back(std::move(message));
    }
    return messages;
}

const Information* find(UnitKind unit, int type)
{
    const auto* const row = std::ranges::find_if(informationTable, [=](const Information& information) {
        return information.type == type && contains(information.units, unit);
    });
    return row == informationTable.end() ? nullptr : row;
}

} // namespace

Messages vehicleInformation(UnitKind unit, Framing framing, MessageView request)
{
    const bool isCan = framing == Framing::isoTp;
    if (request.size() != 1)
        return {};
    const std::uint8_t type = request[0];
    if (type == 0)
        return bitmap(unit, isCan);
    if (const Information* const row = find(unit, type))
        return isCan ? inOneMessage(*row) : inShortMessages(*row);
    const Information* const counted = isCan ? nullptr : find(unit, type + 1);
    if (counted == nullptr || !counted->hasMessageCount)
        return {};
    return {{answerMode, type, static_cast<std::uint8_t>(messageCount(*counted))}};
}

} // namespace zint
