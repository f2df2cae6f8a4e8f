#include "link/receiveGroups.h"

#include "link/replyBuffer.h"

#include <utility>

namespace zint {

/// Where the first group ends; npos while that is not known.
std::size_t ReceiveGroups::endOfGroup() const
{
    constexpr auto unknown = std::string::npos;
    const std::string_view text = text_;
    const std::size_t stop = text.find_first_of("\r>");
    if (stop == unknown)
        return text.size() >= longest ? text.size() : unknown;
    std::size_t end = stop + 1;
    if (text[stop] == ReplyBuffer::prompt)
        return end;
    if (text.substr(end).starts_with('\n'))
        ++end;
    if (end == text.size()) // a line feed or the prompt may still come
        return unknown;
    return text[end] == ReplyBuffer::prompt ? end + 1 : end;
}

std::optional<std::string> ReceiveGroups::take()
{
    const std::size_t end = endOfGroup();
    if (end == std::string::npos)
        return std::nullopt;
    std::string group = text_.substr(0, end);
    text_.erase(0, end);
    return group;
}

std::chrono::milliseconds ReceiveGroups::pause() const
{
    constexpr std::chrono::milliseconds behindLine{100};
    constexpr std::chrono::milliseconds withinLine{5000};
    return text_.find('\r') != std::string::npos ? behindLine : withinLine;
}

std::string ReceiveGroups::takeRest() { return std::exchange(text_, {}); }

} // namespace zint
