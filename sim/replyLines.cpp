#include "sim/replyLines.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <numeric>
#include <string_view>

namespace zint {
namespace {

constexpr std::string_view digits = "0123456789ABCDEF";
constexpr std::size_t singleFrameBytes = 7;
constexpr std::size_t firstFrameBytes = 6;

void appendByte(std::string& line, std::uint8_t byte, const ReplyFormat& format)
{
    line += digits[byte >> 4U];
    line += digits[byte & 0xFU];
    if (format.blanks)
        line += ' ';
}

std::string finished(std::string line, const ReplyFormat& format)
{
    if (format.blanks && !format.trailingBlank)
        line.pop_back();
    return line;
}

std::string bytesLine(std::string line, MessageView bytes, const ReplyFormat& format)
{
    for (const std::uint8_t byte : bytes)
        appendByte(line, byte, format);
    return finished(std::move(line), format);
}

std::string isoLine(MessageView message, const ReplyFormat& format)
{
    if (!format.headers)
        return bytesLine({}, message, format);
    Message frame{0x48, 0x6B, 0x10};
    frame.insert(frame.end(), message.begin(), message.end());
    frame.push_back(std::accumulate(frame.begin(), frame.end(), std::uint8_t{0},
                                    [](int sum, int byte) { return static_cast<std::uint8_t>(sum + byte); }));
    return bytesLine({}, frame, format);
}

std::string canHeader(const ReplyFormat& format) { return format.blanks ? "7E8 " : "7E8"; }

/// "00A" for ten bytes.
std::string lengthLine(std::size_t length)
{
    return {digits[length >> 8U & 0xFU], digits[length >> 4U & 0xFU], digits[length & 0xFU]};
}

/// What stands in front of a frame's data: the header and the control bytes, or the frame's number alone.
std::string framePrefix(std::size_t number, std::size_t length, const ReplyFormat& format)
{
    if (!format.headers)
        return std::string{digits[number % 16], ':'} + (format.blanks ? " " : "");
    std::string prefix = canHeader(format);
    if (number == 0) {
        appendByte(prefix, static_cast<std::uint8_t>(0x10 | length >> 8U), format);
        appendByte(prefix, static_cast<std::uint8_t>(length), format);
    } else {
        appendByte(prefix, static_cast<std::uint8_t>(0x20 | number % 16), format);
    }
    return prefix;
}

/// The frames count 0 to F and again from 0; the last one is filled up with zeros.
std::vector<std::string> canFrames(MessageView message, const ReplyFormat& format)
{
    std::vector<std::string> lines;
    if (!format.headers)
        lines.push_back(lengthLine(message.size()));
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

std::vector<std::string> canLines(MessageView message, const ReplyFormat& format)
{
    if (message.size() > singleFrameBytes)
        return canFrames(message, format);
    std::string line;
    if (format.headers) {
        line = canHeader(format);
        appendByte(line, static_cast<std::uint8_t>(message.size()), format);
    }
    return {bytesLine(std::move(line), message, format)};
}

} // namespace

std::vector<std::string> replyLines(MessageView message, const ReplyFormat& format)
{
    if (format.protocol == VehicleProtocol::can)
        return canLines(message, format);
    return {isoLine(message, format)};
}

} // namespace zint
