#include "link/replyBuffer.h"

#include <utility>

namespace zint {

void ReplyBuffer::append(std::string_view received)
{
    text_ += received;
    if (!text_.starts_with("BUS INIT") || text_.find(prompt) == std::string::npos)
        return;
    auto lineEnd = text_.find('\n');
    if (lineEnd == std::string::npos && busNotice_ == BusNotice::endsWithLine)
        lineEnd = text_.find('\r');
    if (lineEnd != std::string::npos)
        text_.erase(0, lineEnd + 1);
}

std::optional<std::string> ReplyBuffer::takeReply()
{
    if (!text_.ends_with(prompt))
        return std::nullopt;
    return std::exchange(text_, {});
}

} // namespace zint
