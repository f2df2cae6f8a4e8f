#include "sim/vehicle.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>
#include <string>

namespace zint {
namespace {

constexpr std::size_t shortMessageBytes = 7;

// The continuous tests, then the others: which the vehicle has (a bit each), and which have not finished.
constexpr std::uint32_t continuousTests = 0x07;
constexpr std::uint32_t otherTests = 0x65;
constexpr std::uint32_t unfinishedTests = 0x04; // the tank's, which takes a night

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

constexpr std::uint8_t positiveAnswer(std::uint8_t mode) { return static_cast<std::uint8_t>(mode + 0x40); }

/// Appends the lowest bytes of a number, the most significant first.
void appendNumber(Message& message, std::uint32_t number, int byteCount)
{
    for (int i = byteCount - 1; i >= 0; --i)
        message.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
}

std::vector<std::uint16_t> parseCodes(const std::vector<std::string>& texts)
{
    std::vector<std::uint16_t> codes;
    for (const std::string& text : texts) {
        const auto code = troubleCodeBytes(text);
        if (!code)
            throw std::invalid_argument("\"" + text + "\" is no trouble code");
        codes.push_back(*code);
    }
    return codes;
}

using Codes = std::vector<std::uint16_t>;

/// The codes in one message, behind their count.
Messages countedCodes(std::uint8_t mode, const Codes& codes)
{
    Message message{positiveAnswer(mode), static_cast<std::uint8_t>(codes.size())};
    for (const std::uint16_t code : codes)
        appendNumber(message, code, 2);
    return {message};
}

/// The codes in short messages of three; zeros fill up the last one, which also tells that there are none.
Messages splitCodes(std::uint8_t mode, const Codes& codes)
{
    Messages messages;
    std::size_t next = 0;
    do {
        Message message{positiveAnswer(mode)};
        for (; next < codes.size() && message.size() < shortMessageBytes; ++next)
            appendNumber(message, codes[next], 2);
        message.resize(shortMessageBytes, 0);
        messages.push_back(std::move(message));
    } while (next < codes.size());
    return messages;
}

/// The number in one message, behind the count of such numbers.
Messages countedVehicleNumber()
{
    Message message{positiveAnswer(0x09), 0x02, 1};
    message.insert(message.end(), vehicleNumber.begin(), vehicleNumber.end());
    return {message};
}

constexpr std::size_t charactersPerMessage = 4;
constexpr std::uint8_t vehicleNumberMessages = 5;

/// The number in short messages of four characters; zeros fill up the first one in front.
Messages splitVehicleNumber()
{
    std::string text(vehicleNumberMessages * charactersPerMessage - vehicleNumber.size(), '\0');
    text += vehicleNumber;
    Messages messages;
    for (std::uint8_t number = 1; number <= vehicleNumberMessages; ++number) {
        Message message{positiveAnswer(0x09), 0x02, number};
        const std::string part = text.substr((number - 1U) * charactersPerMessage, charactersPerMessage);
        message.insert(message.end(), part.begin(), part.end());
        messages.push_back(std::move(message));
    }
    return messages;
}

} // namespace

std::optional<std::uint16_t> troubleCodeBytes(std::string_view text)
{
    constexpr std::string_view systems = "PCBU";
    if (text.size() != 5)
        return {};
    const auto system = systems.find(text[0]);
    unsigned number = 0;
    const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), number, 16);
    if (system == std::string_view::npos || error != std::errc{} || end != text.data() + text.size() ||
        number > 0x3FFF)
        return {};
    return static_cast<std::uint16_t>(system << 14 | number);
}

Vehicle::Vehicle(const VehicleOptions& options)
    : protocol_(static_cast<unsigned>(options.protocol)), ignitionOn_(options.ignitionOn),
      storedCodes_(parseCodes(options.storedCodes)), pendingCodes_(parseCodes(options.pendingCodes))
{
}

bool Vehicle::hears(std::uint32_t header) const
{
    const ProtocolTraits& known = traits();
    const auto hasAddressOf = [&](std::uint32_t other) {
        return ((header ^ other) & known.addressBits) == 0;
    };
    return hasAddressOf(known.functionalHeader) || hasAddressOf(known.engineHeader);
}

struct Vehicle::Service {
    std::uint8_t mode;
    Messages (Vehicle::*answer)(MessageView);
};

Messages Vehicle::answer(MessageView request, std::chrono::microseconds now)
{
    static constexpr std::array<Service, 6> services{{
        {0x01, &Vehicle::liveData},
        {0x02, &Vehicle::freezeFrame},
        {0x03, &Vehicle::storedCodes},
        {0x04, &Vehicle::clearCodes},
        {0x07, &Vehicle::pendingCodes},
        {0x09, &Vehicle::vehicleInformation},
    }};
    if (!ignitionOn_ || request.empty())
        return {};
    driven_ = now - started_.value_or(now);
    started_ = now - driven_;
    const auto* const service = std::ranges::find(services, request[0], &Service::mode);
    return service == services.end() ? Messages{} : (this->*service->answer)(request.subspan(1));
}

std::uint32_t Vehicle::monitorStatus() const
{
    constexpr std::uint32_t lampOn = 0x80;
    const auto count = static_cast<std::uint32_t>(std::min<std::size_t>(storedCodes_.size(), 0x7F));
    const std::uint32_t lamp = count > 0 ? lampOn | count : 0;
    const std::uint32_t continuous =
        monitorsReset_ ? continuousTests << 4 | continuousTests : continuousTests;
    const std::uint32_t unfinished = monitorsReset_ ? otherTests : unfinishedTests;
    return lamp << 24 | continuous << 16 | otherTests << 8 | unfinished;
}

bool Vehicle::appendLiveValue(Message& message, std::uint8_t pid) const
{
    if (isSupportPid(pid)) {
        const std::uint32_t mask = supportMask(pid, false);
        if (mask == 0 && pid != 0)
            return false;
        message.push_back(pid);
        appendNumber(message, mask, 4);
        return true;
    }
    const VehiclePid* const found = findPid(pid);
    if (found == nullptr)
        return false;
    message.push_back(pid);
    appendNumber(message, found->encode({.drive = driveAt(driven_), .monitorStatus = monitorStatus()}),
                 found->byteCount);
    return true;
}

Messages Vehicle::liveData(MessageView request)
{
    if (request.size() > traits().mostPids)
        return {};
    Message message{positiveAnswer(0x01)};
    bool answered = false;
    for (const std::uint8_t pid : request)
        answered |= appendLiveValue(message, pid);
    return answered ? Messages{message} : Messages{};
}

Messages Vehicle::freezeFrame(MessageView request)
{
    constexpr std::chrono::seconds storedAt{52};
    constexpr std::uint8_t causePid = 0x02;
    constexpr std::uint32_t causeBit = 0x40000000;
    if (request.size() != 2 || request[1] != 0) // there is one frame, number 00
        return {};
    const std::uint8_t pid = request[0];
    const bool stored = !storedCodes_.empty();
    const VehiclePid* const found = findPid(pid);
    Message message{positiveAnswer(0x02), pid, 0};
    if (pid == 0) {
        appendNumber(message, causeBit | (stored ? supportMask(0, true) : 0), 4);
    } else if (pid == causePid) {
        appendNumber(message, stored ? storedCodes_.front() : 0, 2);
    } else if (stored && found != nullptr && found->inFreezeFrame) {
        appendNumber(message, found->encode({.drive = driveAt(storedAt), .monitorStatus = 0}),
                     found->byteCount);
    } else {
        return {};
    }
    return {message};
}

Messages Vehicle::codeMessages(std::uint8_t mode, const std::vector<std::uint16_t>& codes) const
{
    return traits().framing == Framing::isoTp ? countedCodes(mode, codes) : splitCodes(mode, codes);
}

Messages Vehicle::storedCodes(MessageView request)
{
    return request.empty() ? codeMessages(0x03, storedCodes_) : Messages{};
}

Messages Vehicle::pendingCodes(MessageView request)
{
    return request.empty() ? codeMessages(0x07, pendingCodes_) : Messages{};
}

Messages Vehicle::clearCodes(MessageView request)
{
    if (!request.empty())
        return {};
    storedCodes_.clear();
    pendingCodes_.clear();
    monitorsReset_ = true;
    return {Message{positiveAnswer(0x04)}};
}

/// Where the number comes in several messages, type 01 tells in how many.
// NOLINTNEXTLINE(readability-make-member-function-const): a service like the others
Messages Vehicle::vehicleInformation(MessageView request)
{
    constexpr std::uint8_t mode = positiveAnswer(0x09);
    const bool inOneMessage = traits().framing == Framing::isoTp;
    if (request.size() != 1)
        return {};
    switch (request[0]) {
    case 0x00:
        return {inOneMessage ? Message{mode, 0x00, 0x40, 0, 0, 0} : Message{mode, 0x00, 1, 0xC0, 0, 0, 0}};
    case 0x01:
        return inOneMessage ? Messages{} : Messages{Message{mode, 0x01, vehicleNumberMessages}};
    case 0x02:
        return inOneMessage ? countedVehicleNumber() : splitVehicleNumber();
    default:
        return {};
    }
}

} // namespace zint
