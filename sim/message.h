#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zint {

/// The data bytes of one request or answer, without header, checksum or frame numbers.
using Message = std::vector<std::uint8_t>;
using Messages = std::vector<Message>;
using MessageView = std::span<const std::uint8_t>;

inline constexpr std::size_t shortMessageBytes = 7; ///< at most, on the buses before CAN
inline constexpr std::uint8_t refusal = 0x7F;       ///< in place of a service

constexpr std::uint8_t positiveAnswer(std::uint8_t mode) { return static_cast<std::uint8_t>(mode + 0x40); }

/// Appends the lowest bytes of a number, the most significant first.
inline void appendNumber(Message& message, std::uint64_t number, int byteCount)
{
    for (int i = byteCount - 1; i >= 0; --i)
        message.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
}

} // namespace zint
