#include "vehicle/busFrames.h"

#include "shared/module1.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace zint {
namespace {

constexpr std::uint8_t tester = 0xF1;
constexpr std::uint8_t functionalAnswer = 0x6B;
constexpr std::size_t busHeaderLength = 3;
constexpr std::size_t canFrameLength = 8; // CAN, in bytes
constexpr std::uint32_t firstLongId = 0x800;

Bytes cutOut(const Bytes& bytes, std::size_t start, std::size_t length)
{
    const BytesView found = BytesView(bytes).subspan(std::min(start, bytes.size()));
    const BytesView taken = found.first(std::min(length, found.size()));
    return {taken.begin(), taken.end()};
}

/// Reads the bytes behind an identifier by ISO 15765-2. Flow control is no part of a message.
std::optional<Frame> canFrame(std::uint32_t unit, const Bytes& bytes)
{
    if (bytes.size() < 2 || bytes.size() > canFrameLength)
        return std::nullopt;
    const std::size_t low = bytes[0] & 0x0F;
    switch (bytes[0] >> 4) {
    case 0:
        if (low == 0 || low == canFrameLength || low > canFrameLength)
            return std::nullopt;
        return Frame{.unit = unit, .data = cutOut(bytes, 1, low), .isDamaged = bytes.size() <= low};
    case 1: {
        const std::size_t length = low << 8 | bytes[1];
        if (length < canFrameLength || bytes.size() == 2)
            return std::nullopt;
        return Frame{.kind = FrameKind::first,
                     .unit = unit,
                     .length = length,
                     .data = cutOut(bytes, 2, canFrameLength)};
    }
    case 2:
        return Frame{.kind = FrameKind::consecutive,
                     .unit = unit,
                     .number = static_cast<int>(low),
                     .data = cutOut(bytes, 1, canFrameLength)};
    default:
        return std::nullopt;
    }
}

/// Whether the digit behind an identifier is the number of bytes (DLC): the other digits are pairs.
bool hasCount(const HexLine& line, std::size_t idDigits)
{
    const std::size_t behind = line.digits.size() - idDigits;
    return behind % 2 != 0 && line.digits[idDigits] <= canFrameLength && line.digits[idDigits] >= behind / 2;
}

/// A frame of which half a byte is missing somewhere: what it holds is uncertain, but that it came.
std::optional<Frame> damaged(std::optional<Frame> frame)
{
    if (!frame || frame->kind == FrameKind::consecutive)
        return std::nullopt;
    frame->isDamaged = true;
    return frame;
}

/// A line that begins with an identifier of so many digits.
std::optional<Frame> frameWithId(const HexLine& line, std::size_t idDigits, int highestDigit)
{
    if (line.digits.size() <= idDigits || line.digits[0] > highestDigit)
        return std::nullopt;
    const auto addDigit = [](std::uint32_t id, std::uint8_t digit) { return id << 4 | digit; };
    const auto idEnd = line.digits.begin() + static_cast<std::ptrdiff_t>(idDigits);
    const std::uint32_t id = std::accumulate(line.digits.begin(), idEnd, std::uint32_t{0}, addDigit);
    const bool isCounted = hasCount(line, idDigits);
    auto frame = canFrame(id, line.bytesFrom(idDigits + (isCounted ? 1 : 0)));
    const bool isWhole = isCounted || (line.digits.size() - idDigits) % 2 == 0;
    return isWhole ? frame : damaged(std::move(frame));
}

std::optional<Frame> can11Frame(const HexLine& line)
{
    constexpr std::size_t idDigits = 3;
    return line.firstGroup >= idDigits ? frameWithId(line, idDigits, 7)
                                       : std::nullopt; // pairs are no identifier
}

/// SAE J1850: polynomial 1D, start FF, inverted.
constexpr std::array<std::uint8_t, 256> crcTable = [] {
    std::array<std::uint8_t, 256> table{};
    for (unsigned i = 0; i < table.size(); ++i) {
        unsigned crc = i;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 0x80U) != 0 ? crc << 1 ^ 0x1DU : crc << 1;
        table[i] = static_cast<std::uint8_t>(crc);
    }
    return table;
}();

bool isChecked(BytesView bytes, std::uint8_t (*check)(BytesView))
{
    return check(bytes.first(bytes.size() - 1)) == bytes.back();
}

/// A line with the three header bytes of J1850 and ISO 9141-2. On the PWM bus a byte of the receiver's
/// acknowledgement may follow the checksum.
std::optional<Frame> headedFrame(const Bytes& bytes, std::uint8_t (*check)(BytesView))
{
    if (bytes.size() < busHeaderLength + 2 || bytes[0] >= 0x80)
        return std::nullopt;
    if (bytes[1] != functionalAnswer && bytes[1] != tester)
        return std::nullopt;
    const bool isRight = isChecked(bytes, check);
    const bool isAcknowledged = !isRight && check == crcOf && bytes.size() > busHeaderLength + 2 &&
                                isChecked(BytesView(bytes).first(bytes.size() - 1), check);
    const std::size_t behind = isAcknowledged ? 2 : 1;
    return Frame{.unit = bytes[2],
                 .data = cutOut(bytes, busHeaderLength, bytes.size() - busHeaderLength - behind),
                 .isDamaged = !isRight && !isAcknowledged};
}

/// A line by ISO 14230-4. The length tells where the checksum is; some adapters leave that out.
std::optional<Frame> kwpFrame(const Bytes& bytes)
{
    if (bytes.size() < busHeaderLength + 2 || bytes[0] < 0x80 || bytes[1] != tester)
        return std::nullopt;
    const std::size_t shortLength = bytes[0] & 0x3F;
    const std::size_t start = shortLength == 0 ? busHeaderLength + 1 : busHeaderLength;
    const std::size_t length = shortLength == 0 ? bytes[busHeaderLength] : shortLength;
    const std::size_t end = start + length;
    if (length == 0)
        return std::nullopt;
    const bool isWhole =
        bytes.size() == end || (bytes.size() > end && isChecked(BytesView(bytes).first(end + 1), sumOf));
    return Frame{.unit = bytes[2], .data = cutOut(bytes, start, length), .isDamaged = !isWhole};
}

std::optional<Frame> plainFrame(const HexLine& line)
{
    if (line.digits.size() == 3 && !line.index)
        return Frame{.kind = FrameKind::length,
                     .length = line.digits[0] * 256U + line.digits[1] * 16U + line.digits[2],
                     .data = {}};
    if (line.digits.size() < 2)
        return std::nullopt;
    return Frame{.kind = line.index ? FrameKind::consecutive : FrameKind::whole,
                 .number = line.index.value_or(0),
                 .data = line.bytesFrom(0)};
}

std::optional<Frame> bytesFrame(LineForm form, const Bytes& bytes)
{
    switch (form) {
    case LineForm::crcHeader:
        return headedFrame(bytes, crcOf);
    case LineForm::sumHeader:
        return headedFrame(bytes, sumOf);
    case LineForm::kwpHeader:
        return kwpFrame(bytes);
    default:
        return canFrame(0, bytes);
    }
}

} // namespace

std::uint8_t sumOf(BytesView bytes)
{
    return std::accumulate(
        bytes.begin(), bytes.end(), std::uint8_t{0},
        [](std::uint8_t sum, std::uint8_t byte) { return static_cast<std::uint8_t>(sum + byte); });
}

std::uint8_t crcOf(BytesView bytes)
{
    std::uint8_t crc = 0xFF;
    for (const std::uint8_t byte : bytes)
        crc = crcTable[crc ^ byte];
    return static_cast<std::uint8_t>(~crc);
}

std::span<const LineForm> formsOf(BusProtocol protocol)
{
    using enum LineForm;
    static constexpr std::array can11Forms = {can11, plain, plainFrames};
    static constexpr std::array can29Forms = {can29, plain, plainFrames};
    static constexpr std::array j1850Forms = {crcHeader, plain};
    static constexpr std::array isoForms = {sumHeader, plain};
    static constexpr std::array kwpForms = {kwpHeader, plain};
    if (isCan(protocol))
        return hasLongIds(protocol) ? can29Forms : can11Forms;
    switch (protocol) {
    case BusProtocol::j1850Pwm:
    case BusProtocol::j1850Vpw:
        return j1850Forms;
    case BusProtocol::iso9141:
        return isoForms;
    case BusProtocol::kwpSlowInit:
    case BusProtocol::kwpFastInit:
        return kwpForms;
    default:
        return allLineForms;
    }
}

bool hasHeader(LineForm form) { return form != LineForm::plain && form != LineForm::plainFrames; }

std::optional<Frame> frameIn(LineForm form, const HexLine& line)
{
    if (line.index && form != LineForm::plain)
        return std::nullopt;
    if (form == LineForm::can11)
        return can11Frame(line);
    if (form == LineForm::can29)
        return frameWithId(line, 8, 1);
    auto frame = form == LineForm::plain ? plainFrame(line) : bytesFrame(form, line.bytesFrom(0));
    const bool isWhole = line.digits.size() % 2 == 0 || (frame && frame->kind == FrameKind::length);
    return isWhole ? frame : damaged(std::move(frame));
}

std::string unitName(LineForm form, std::uint32_t unit)
{
    const bool isShortId = form == LineForm::can11 || (form == LineForm::can29 && unit < firstLongId);
    return isShortId ? hexText(static_cast<std::int32_t>(unit), 3)
                     : hexText(static_cast<std::int32_t>(unit & 0xFF), 2);
}

} // namespace zint
