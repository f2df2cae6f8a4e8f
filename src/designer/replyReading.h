#pragma once

#include "catalogue/ownParameter.h"
#include "link/adapterLink.h"
#include "shared/prompts.h"

#include <deque>
#include <functional>
#include <string>
#include <string_view>

namespace zint {

/// Asks the vehicle once for an own parameter: one exchange, whose answers the time-out guards all.
class ReplyReading final : private AdapterLink::Listener {
public:
    /// @param prompts outlives the reading
    ReplyReading(AdapterLine line, Prompts& prompts);

    void begin(const OwnParameter& parameter); ///< does nothing while the port is open
    void close();                              ///< ends an exchange that is on

    bool isOpen() const { return link_.isOpen(); }
    std::string status() const { return link_.status(); }

    std::function<void()> onChanged; ///< called when status or port may have changed

    /// Called with the reply to the request, without the prompt, once the port is closed.
    std::function<void(const std::string& reply)> onReply;

private:
    void linkReady() override { sendNext(); }
    void linkReply(std::string_view reply) override;
    void linkReceived() override { onChanged(); }
    void linkSilent() override { onChanged(); }
    void linkNotice(std::string_view text) override;
    void linkTimedOut() override;
    void linkLost() override { onChanged(); }

    void sendNext();
    void tellRefused(std::string_view reply);

    AdapterLink link_;
    Prompts& prompts_;
    std::deque<std::string> commands_; ///< not answered yet; the last one is the request
};

/// What sets up the adapter for a parameter's header and filter, and its request.
std::deque<std::string> commandsFor(const OwnParameter& parameter);

} // namespace zint
