#include "link/receiveGroups.h"

#include "link/replyBuffer.h"

#include <utility>

namespace zint {

ReceiveGroups::End ReceiveGroups::endOfGroup() const
{
    const std::string_view text = text_;
    const auto endsReplies = [text](std::size_t prompt) {
        return text.find_first_not_of(ReplyBuffer::filler, prompt + 1) == std::string::npos;
    };
    const std::size_t begin = text.find_first_not_of(ReplyBuffer::filler);
    std::size_t stop = text.find_first_of("\r>", begin);
    while (stop != std::string::npos && text[stop] == ReplyBuffer::prompt) {
        if (endsReplies(stop))
            return {stop + 1, true};
        stop = text.find_first_of("\r>", stop + 1);
    }
    if (stop == std::string::npos && text.size() < longest)
        return ReplyBuffer::isText(text) ? End{} : End{text.size(), false};
    if (stop == std::string::npos)
        return {text.size(), true};
    std::size_t end = stop + 1;
    if (text.substr(end).starts_with('\n'))
        ++end;
    if (end == text.size())
        return {end, false};
    const bool hasPrompt = text[end] == ReplyBuffer::prompt && endsReplies(end);
    return {hasPrompt ? end + 1 : end, true};
}

std::optional<std::string> ReceiveGroups::take()
{
    const End end = endOfGroup();
    if (!end.isCertain)
        return std::nullopt;
    std::string group = text_.substr(0, end.position);
    text_.erase(0, end.position);
    return group;
}

bool ReceiveGroups::hasLine() const { return endOfGroup().position != std::string::npos; }

std::string ReceiveGroups::takeRest() { return std::exchange(text_, {}); }

} // namespace zint
