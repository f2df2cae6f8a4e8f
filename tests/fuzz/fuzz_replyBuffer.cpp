// Received characters in arbitrary pieces, through the link to a tool: each reply ends in a prompt, and
// nothing is lost or invented but the line that reports a bus initialisation.
//
// Input: pieces, each a length byte and so many characters.

#include "fuzz/fuzzInput.h"
#include "link/adapterLink.h"
#include "support/manualTimer.h"

#include <optional>
#include <string>

namespace zint {
namespace {

class Port final : public SerialPort {
public:
    void open() override { open_ = true; }
    void close() override { open_ = false; }
    bool isOpen() const override { return open_; }
    void output(std::string_view) override {}
    std::string input() override { return takeInput(received_); }
    int inBufferCount() const override { return static_cast<int>(received_.size()); }
    int lastCommEvent() const override { return commEvent::receive; }

    void receive(std::string_view text)
    {
        received_ += text;
        onComm();
    }

private:
    std::string received_;
    bool open_ = false;
};

struct Tool final : AdapterLink::Listener {
    std::optional<std::string> reply;
    bool ready = false;

    void linkReady() override { ready = true; }
    void linkReply(std::string_view text) override
    {
        require(!reply, "one notification brings one reply at most");
        reply = text;
    }
    void linkReceived() override {}
    void linkStatusChanged() override { require(false, "the port sends no other event"); }
    void linkTimedOut() override { require(false, "the adapter has answered the reset"); }
    void linkLost() override { require(false, "the device is there"); }
};

void run(FuzzInput input)
{
    Port port;
    ManualTimer timer;
    Tool tool;
    AdapterLink link(port, timer, {}, tool);
    require(link.open(), "the port opens");
    port.receive(">");
    port.receive(">");
    require(tool.ready && !timer.enabled(), "two prompts open the link");

    std::int64_t bytes = 2;
    std::string sinceLastReply;
    while (!input.empty()) {
        const std::string_view piece = input.take(input.takeByte());
        bytes += static_cast<std::int64_t>(piece.size());
        sinceLastReply += piece;
        tool.reply.reset();
        port.receive(piece);
        require(link.counters().bytesIn == bytes, "each character is counted");

        const bool prompted = sinceLastReply.ends_with('>');
        if (sinceLastReply.find("BUS INIT") == std::string::npos)
            require(tool.reply.has_value() == prompted, "a prompt at the end completes a reply");
        if (!tool.reply)
            continue;
        require(prompted, "nothing else completes a reply");
        require(tool.reply->ends_with('>'), "a reply ends in its prompt");
        require(sinceLastReply.ends_with(*tool.reply), "a reply is what was received last");
        if (!sinceLastReply.starts_with("BUS INIT"))
            require(*tool.reply == sinceLastReply, "a reply is all that was received");
        sinceLastReply.clear();
    }
}

} // namespace
} // namespace zint

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    zint::run({data, size});
    return 0;
}
