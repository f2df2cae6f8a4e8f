#pragma once

#include "link/adapterLink.h"
#include "shared/prompts.h"

#include <functional>
#include <string>
#include <string_view>

namespace zint {

/// Asks the vehicle which requests of mode 01 it supports: one exchange, whose answers the time-out guards
/// all, for a silent vehicle must not keep the designer's port open.
class SupportCheck final : private AdapterLink::Listener {
public:
    /// @param prompts outlives the check
    SupportCheck(AdapterLine line, Prompts& prompts);

    void begin(); ///< does nothing while the port is open
    void close(); ///< ends an exchange that is on

    std::string status() const { return link_.status(); }
    std::string counterLine() const { return link_.counterLine(); }

    std::function<void()> onChanged; ///< called when status or counters may have changed

    /// Called with a good answer and hexToBits() of it, once the port is closed. @return what the status adds
    std::function<std::string(std::string_view reply, const std::string& bits)> onAnswer;

private:
    void linkReady() override;
    void linkReply(std::string_view reply) override;
    void linkReceived() override;
    void linkSilent() override { onChanged(); }
    void linkNotice(std::string_view text) override;
    void linkTimedOut() override;
    void linkLost() override;

    AdapterLink link_;
    Prompts& prompts_;
};

} // namespace zint
