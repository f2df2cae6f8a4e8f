#include "sim/replyLines.h"

#include "shared/module1.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string_view>

namespace zint {
namespace {

constexpr std::size_t singleFrameBytes = 7;
constexpr std::size_t firstFrameBytes = 6;

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

/// "48 6B 10 41 0D 00 11 ": the header, the message, and the lowest byte of their sum.
std::string messageLine(MessageView message, const ReplyFormat& format)
{
    if (!format.headers)
        return bytesLine({}, message, format);
    Message frame{0x48, 0x6B, 0x10};
    frame.insert(frame.end(), message.begin(), message.end());
    frame.push_back(static_cast<std::uint8_t>(std::accumulate(frame.begin(), frame.end(), 0)));
    return bytesLine({}, frame, format);
}

/// "7E8 " and the control bytes that stand in front of a frame's data.
std::string canHeader(const Message& controlBytes, const ReplyFormat& format)
{
    return (format.blanks ? "7E8 " : "7E8") + bytesText(controlBytes, format);
}

/// What stands in front of a frame's data: "0: ", or with headers "7E8 10 0A " and then "7E8 21 ".
std::string framePrefix(std::size_t number, std::size_t length, const ReplyFormat& format)
{
    const auto digit = static_cast<std::uint8_t>(number % 16);
    if (!format.headers)
        return hexText(digit, 1) + (format.blanks ? ": " : ":");
    if (number > 0)
        return canHeader({static_cast<std::uint8_t>(0x20 | digit)}, format);
    return canHeader({static_cast<std::uint8_t>(0x10 | length >> 8U), static_cast<std::uint8_t>(length)},
                     format);
}

/// "00A" for ten bytes, then the frames, which count 0 to F and again from 0. Zeros fill up the last one.
std::vector<std::string> isoTpFrames(MessageView message, const ReplyFormat& format)
{
    std::vector<std::string> lines;
    if (!format.headers)
        lines.push_back(hexText(static_cast<std::int32_t>(message.size()), 3));
    std::size_t begin = 0;
    for (std::size_t number = 0; begin < message.size(); ++number) {
        const std::size_t capacity = number == 0 ? firstFrameBytes : singleFrameBytes;
        const MessageView part = message.subspan(begin, std::min(capacity, message.size() - begin));
        Message data(part.begin(), part.end());
        data.resize(capacity, 0);
        lines.push_back(bytesLine(framePrefix(number, message.size(), format), data, format));
        begin += part.size();
    }
    return lines;
}

/// "7E8 06 41 00 BE 3F B8 13 ": with headers, the length stands in front of the message.
std::string singleFrameLine(MessageView message, const ReplyFormat& format)
{
    const auto length = static_cast<std::uint8_t>(message.size());
    return bytesLine(format.headers ? canHeader({length}, format) : "", message, format);
}

} // namespace

std::vector<std::string> replyLines(MessageView message, const ReplyFormat& format)
{
    if (format.framing == Framing::shortMessages)
        return {messageLine(message, format)};
    if (message.size() > singleFrameBytes)
        return isoTpFrames(message, format);
    return {singleFrameLine(message, format)};
}

} // namespace zint
