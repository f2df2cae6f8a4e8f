#include "runner/replyWatch.h"

#include "shared/module1.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace zint {
namespace {

constexpr int manyBadReplies = 10;
constexpr std::chrono::seconds longSilence{10};

std::string firstLineOf(std::string_view reply)
{
    constexpr std::size_t longest = 40;
    const auto isShown = [](char c) { return c >= ' ' && c <= '~' && c != '>'; };
    const auto length = std::ranges::find_if_not(reply, isShown) - reply.begin();
    std::string line(reply.substr(0, static_cast<std::size_t>(length)));
    line.erase(std::min(line.find_last_not_of(' ') + 1, longest));
    return line;
}

/// Whether a reply's first line is nothing but bytes, as opposed to words of the adapter.
bool isBytes(std::string_view reply)
{
    const std::string line = firstLineOf(reply);
    return !line.empty() &&
           std::ranges::all_of(line, [](char c) { return c == ' ' || upperHexDigit(c) >= 0; });
}

bool beginsWith(std::string_view reply, std::string_view echo)
{
    reply.remove_prefix(std::min(reply.find_first_not_of(' '), reply.size()));
    return reply.starts_with(echo) && (reply.size() == echo.size() || upperHexDigit(reply[echo.size()]) < 0);
}

} // namespace

std::optional<std::string> echoOf(std::string_view request)
{
    constexpr std::size_t digitsPerByte = 2;
    constexpr std::size_t echoDigits = 2 * digitsPerByte;
    constexpr std::int32_t answer = 0x40; // is added to the mode
    std::string digits;
    std::ranges::copy_if(request, std::back_inserter(digits), [](char c) { return c != ' '; });
    digits = upperCase(digits.substr(0, echoDigits));
    if (digits.size() < digitsPerByte ||
        std::ranges::any_of(digits, [](char c) { return upperHexDigit(c) < 0; }))
        return std::nullopt;
    std::string echo = hexText((hexToNumber(digits.substr(0, digitsPerByte)) + answer) & 0xFF, digitsPerByte);
    if (digits.size() == echoDigits)
        echo += ' ' + digits.substr(digitsPerByte);
    return echo;
}

ReplyFit fitOf(std::string_view request, std::string_view reply, bool isGood)
{
    const auto echo = echoOf(request);
    if (!echo || (!isGood && !isBytes(reply)))
        return ReplyFit::unknown;
    if (beginsWith(reply, *echo))
        return ReplyFit::match;
    return beginsWith(reply, "7F") ? ReplyFit::refused : ReplyFit::mismatch;
}

void ReplyWatch::take(ReplyFit fit, std::string_view reply, bool isGood, Time now)
{
    heardAt_ = now;
    badReplies_ = isGood ? 0 : badReplies_ + 1;
    if (!isGood)
        badReply_ = firstLineOf(reply);
    fit_ = fit;
    if (fit_ == ReplyFit::unknown)
        return;
    mismatches_ = fit_ == ReplyFit::match ? 0 : mismatches_ + 1;
    sawMismatch_ = sawMismatch_ || mismatches_ >= manyMismatches;
}

void ReplyWatch::forgive()
{
    mismatches_ = 0;
    badReplies_ = 0;
}

std::string ReplyWatch::text(Time now) const
{
    if (mismatches_ >= manyMismatches) // which silence does not mend
        return std::string(mismatchText);
    if (now - heardAt_ >= longSilence)
        return "no reply for " + std::to_string(longSilence.count()) + " s";
    if (badReplies_ < manyBadReplies)
        return {};
    return "No data from the vehicle" + (badReply_.empty() ? "" : " (" + badReply_ + ")") + ": ignition on?";
}

} // namespace zint
