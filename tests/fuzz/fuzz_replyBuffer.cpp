// Received characters in arbitrary pieces: each reply ends in a prompt, and nothing is lost in front of it
// but line ends, blanks, bytes 00 and a line that reports that the vehicle had to be found.
//
// Input: pieces, each a length byte and so many characters.

#include "fuzz/fuzzInput.h"
#include "link/replyBuffer.h"

#include <algorithm>

namespace zint {
namespace {

std::string_view withoutFiller(std::string_view text)
{
    return text.substr(std::min(text.find_first_not_of(ReplyBuffer::filler), text.size()));
}

} // namespace

void fuzz(std::string_view input)
{
    ReplyBuffer buffer;
    std::string received; // since the last reply
    while (!input.empty()) {
        const std::string_view piece = input.substr(1, byteAt(input, 0));
        input.remove_prefix(1 + piece.size());
        received += piece;
        buffer.append(piece);
        const auto reply = buffer.takeReply();
        require(reply.has_value() == received.ends_with('>'), "a prompt completes a reply");
        if (!reply)
            continue;
        require(received.ends_with(*reply), "a reply ends what was received");
        require(withoutFiller(*reply) == *reply, "a reply begins with its data");
        received.resize(received.size() - reply->size());
        const std::string_view dropped = withoutFiller(received);
        require(dropped.empty() || dropped.starts_with("BUS INIT") || dropped.starts_with("SEARCHING..."),
                "nothing else is dropped");
        received.clear();
    }
}

} // namespace zint
