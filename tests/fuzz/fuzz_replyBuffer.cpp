// Received characters in arbitrary pieces: each reply ends in a prompt, and nothing is lost in front of it
// but line ends, blanks, bytes 00 and a line that reports that the vehicle had to be found.
//
// Input: pieces, each a length byte and so many characters.

#include "fuzz/fuzzInput.h"
#include "link/replyBuffer.h"

#include <algorithm>
#include <string>

namespace zint {
namespace {

std::string_view withoutFiller(std::string_view text)
{
    return text.substr(std::min(text.find_first_not_of(ReplyBuffer::filler), text.size()));
}

bool isDroppedRightly(std::string_view front)
{
    const std::string_view line = withoutFiller(front);
    return line.empty() || line.starts_with("BUS INIT") || line.starts_with("SEARCHING...");
}

} // namespace
} // namespace zint

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace zint;
    std::string_view input = asText(data, size);
    ReplyBuffer buffer;
    std::string sinceLastReply;
    while (!input.empty()) {
        const std::string_view piece = input.substr(1, static_cast<std::uint8_t>(input[0]));
        input.remove_prefix(1 + piece.size());
        sinceLastReply += piece;
        buffer.append(piece);
        const auto reply = buffer.takeReply();
        require(reply.has_value() == sinceLastReply.ends_with('>'), "a prompt completes a reply");
        if (!reply)
            continue;
        require(sinceLastReply.ends_with(*reply), "a reply ends what was received");
        require(withoutFiller(*reply) == *reply, "a reply begins with its data");
        sinceLastReply.resize(sinceLastReply.size() - reply->size());
        require(isDroppedRightly(sinceLastReply), "nothing else is dropped");
        sinceLastReply.clear();
    }
    return 0;
}
