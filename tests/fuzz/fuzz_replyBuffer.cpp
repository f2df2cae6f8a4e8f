// Received characters in arbitrary pieces: each reply ends in a prompt, and nothing is lost or invented but
// the line that reports a bus initialisation.
//
// Input: pieces, each a length byte and so many characters.

#include "fuzz/fuzzInput.h"
#include "link/replyBuffer.h"

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
        if (sinceLastReply.find("BUS INIT") == std::string::npos)
            require(reply.has_value() == sinceLastReply.ends_with('>'), "a prompt completes a reply");
        if (!reply)
            continue;
        require(reply->ends_with('>') && sinceLastReply.ends_with(*reply), "a reply ends what was received");
        require(sinceLastReply.starts_with("BUS INIT") || *reply == sinceLastReply, "it is all of it");
        sinceLastReply.clear();
    }
    return 0;
}
