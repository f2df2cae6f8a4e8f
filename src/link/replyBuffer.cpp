#include "link/replyBuffer.h"

#include <algorithm>
#include <utility>

namespace zint {
namespace {

bool isAnnouncement(std::string_view line)
{
    return line.starts_with("BUS INIT") || line.starts_with("SEARCHING...");
}

} // namespace

void ReplyBuffer::append(std::string_view received)
{
    if (text_.empty())
        announcement_.clear();
    text_ += received;
    if (!dropsFront_)
        return;
    dropFiller();
    if (!isAnnouncement(text_) || text_.find(prompt) == std::string::npos)
        return;
    auto firstEnd = text_.find('\n');
    if (firstEnd == std::string::npos)
        firstEnd = text_.find('\r');
    if (firstEnd == std::string::npos)
        return;
    announcement_ = text_.substr(0, std::min(text_.find('\r'), firstEnd));
    text_.erase(0, firstEnd + 1);
    dropFiller();
}

void ReplyBuffer::dropFiller() { text_.erase(0, std::min(text_.find_first_not_of(filler), text_.size())); }

std::optional<std::string> ReplyBuffer::takeReply()
{
    if (!text_.ends_with(prompt))
        return std::nullopt;
    return std::exchange(text_, {});
}

bool ReplyBuffer::isText(std::string_view received)
{
    return std::ranges::all_of(
        received, [](char c) { return (c >= ' ' && c <= '~') || filler.find(c) != std::string_view::npos; });
}

void ReplyBuffer::clear()
{
    text_.clear();
    announcement_.clear();
}

std::vector<std::string_view> replyLines(std::string_view reply)
{
    constexpr std::string_view ends = "\r\n>";
    std::vector<std::string_view> lines;
    for (auto begin = reply.find_first_not_of(ends); begin != std::string_view::npos;) {
        const auto end = std::min(reply.find_first_of(ends, begin), reply.size());
        lines.push_back(reply.substr(begin, end - begin));
        begin = reply.find_first_not_of(ends, end);
    }
    return lines;
}

} // namespace zint
