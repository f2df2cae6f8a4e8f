#include "sim/replyLines.h"

#include "shared/module1.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

namespace zint {
namespace {

constexpr std::size_t frameBytes = 8;
constexpr std::size_t singleFrameBytes = 7;

std::string bytesText(MessageView bytes, const ReplyFormat& format)
{
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += hexText(byte, 2);
        text += format.blanks ? " " : "";
    }
    return text;
}

/// A line of a prefix and bytes, which are one or more.
std::string bytesLine(std::string prefix, MessageView bytes, const ReplyFormat& format)
{
    std::string line = std::move(prefix) + bytesText(bytes, format);
    if (format.blanks && !format.trailingBlank)
        line.pop_back();
    return line;
}

std::uint8_t crc(MessageView bytes)
{
    constexpr unsigned polynomial = 0x1D;
    unsigned remainder = 0xFF;
    for (const std::uint8_t byte : bytes) {
        remainder ^= byte;
        for (int bit = 0; bit < 8; ++bit)
            remainder = (remainder & 0x80U) != 0 ? (remainder << 1U ^ polynomial) & 0xFFU : remainder << 1U;
    }
    return static_cast<std::uint8_t>(remainder ^ 0xFFU);
}

/// "48 6B 10", or with the length "86 F1 10", or "80 F1 10 06".
Message header(const UnitAddress& from, std::size_t length, const ReplyFormat& format)
{
    const bool tellsLength = format.protocol->headerForm == HeaderForm::withLength;
    const auto lengthByte = static_cast<std::uint8_t>(length);
    Message bytes;
    appendNumber(bytes, format.protocol->replyHeader, 2);
    bytes.push_back(from.address);
    if (tellsLength && format.ownLengthByte)
        bytes.push_back(lengthByte);
    else if (tellsLength)
        bytes[0] |= lengthByte;
    return bytes;
}

/// "48 6B 10 41 0D 00 11 ": the header, the message, the check.
std::string messageLine(const UnitAddress& from, MessageView message, const ReplyFormat& format)
{
    if (!format.headers)
        return bytesLine({}, message, format);
    Message bytes = header(from, message.size(), format);
    bytes.insert(bytes.end(), message.begin(), message.end());
    bytes.push_back(checkByte(format.protocol->check, bytes));
    return bytesLine({}, bytes, format);
}

/// "7E8 ", or "18 DA F1 10 ".
std::string identifier(const UnitAddress& from, const ReplyFormat& format)
{
    const std::uint32_t number = replyIdentifier(from, *format.protocol);
    if (format.protocol->headerForm == HeaderForm::id11)
        return hexText(static_cast<std::int32_t>(number), 3) + (format.blanks ? " " : "");
    Message bytes;
    appendNumber(bytes, number, 4);
    return bytesText(bytes, format);
}

/// A frame with all its bytes, behind its identifier where headers are on.
std::string frameLine(const UnitAddress& from, MessageView frame, const ReplyFormat& format)
{
    std::string prefix = format.headers ? identifier(from, format) : "";
    if (format.headers && format.lengthDigit)
        prefix += hexText(static_cast<std::int32_t>(frame.size()), 1) + (format.blanks ? " " : "");
    return bytesLine(std::move(prefix), frame, format);
}

/// What a frame begins with: its kind, and the length of the message or the frame's number.
Message controlBytes(std::size_t number, std::size_t length)
{
    if (length <= singleFrameBytes)
        return {static_cast<std::uint8_t>(length)};
    if (number > 0)
        return {static_cast<std::uint8_t>(0x20 | number % 16)};
    return {static_cast<std::uint8_t>(0x10 | length >> 8U), static_cast<std::uint8_t>(length)};
}

/// The data of a frame, and what is sent of it beside them.
struct Frame {
    Message control;
    Message data; ///< filled up
};

std::vector<Frame> frames(MessageView message, const ReplyFormat& format)
{
    std::vector<Frame> list;
    const bool isLong = message.size() > singleFrameBytes;
    for (std::size_t begin = 0; begin < message.size();) {
        Frame frame{.control = controlBytes(list.size(), message.size()), .data = {}};
        const std::size_t capacity = frameBytes - frame.control.size();
        const MessageView part = message.subspan(begin, std::min(capacity, message.size() - begin));
        frame.data.assign(part.begin(), part.end());
        if (isLong || format.padding)
            frame.data.resize(capacity, format.padding.value_or(0));
        begin += part.size();
        list.push_back(std::move(frame));
    }
    return list;
}

/// "00A" for ten bytes, then the frames, which count 0 to F and again from 0.
std::vector<std::string> numberedLines(MessageView message, const ReplyFormat& format)
{
    std::vector<std::string> lines{hexText(static_cast<std::int32_t>(message.size()), 3)};
    for (const Frame& frame : frames(message, format)) {
        const auto number = static_cast<std::int32_t>((lines.size() - 1) % 16);
        lines.push_back(bytesLine(hexText(number, 1) + (format.blanks ? ": " : ":"), frame.data, format));
    }
    return lines;
}

/// "7E8 10 0A 43 04 ...", "7E8 21 ...".
std::vector<std::string> frameLines(const UnitAddress& from, MessageView message, const ReplyFormat& format)
{
    std::vector<std::string> lines;
    for (Frame& frame : frames(message, format)) {
        frame.control.insert(frame.control.end(), frame.data.begin(), frame.data.end());
        lines.push_back(frameLine(from, frame.control, format));
    }
    return lines;
}

} // namespace

std::vector<std::string> replyLines(const UnitAddress& from, MessageView message, const ReplyFormat& format)
{
    if (format.protocol->framing == Framing::shortMessages)
        return {messageLine(from, message, format)};
    if (format.headers || !format.autoFormat)
        return frameLines(from, message, format);
    if (message.size() > singleFrameBytes)
        return numberedLines(message, format);
    const Message shown = frames(message, format).front().data;
    return {bytesLine({}, format.showsPadding ? shown : message, format)};
}

std::uint32_t replyIdentifier(const UnitAddress& from, const ProtocolTraits& protocol)
{
    constexpr std::uint32_t behindRequest = 8;
    return protocol.headerForm == HeaderForm::id11 ? from.header + behindRequest
                                                   : protocol.replyHeader | from.address;
}

std::uint8_t checkByte(CheckByte kind, MessageView message)
{
    return kind == CheckByte::crc
               ? crc(message)
               : static_cast<std::uint8_t>(std::accumulate(message.begin(), message.end(), 0U));
}

} // namespace zint
