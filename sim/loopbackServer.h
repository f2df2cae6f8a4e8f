#pragma once

#include "sim/pseudoTerminal.h"

#include <optional>
#include <string>
#include <string_view>

namespace zint {

/// Waits for clients on 127.0.0.1, as an adapter with Wi-Fi does in its own network: it serves one at a time.
/// Another may connect meanwhile, but hears nothing until the first has gone. Calls throw std::system_error
/// where the system refuses.
class LoopbackServer {
public:
    /// @param port 0 to 65535; 0: one that is free
    explicit LoopbackServer(int port);

    int port() const { return port_; }

    bool hasClient() const { return client_.has_value(); }

    /// Becomes readable when a client comes, writes or goes.
    int descriptor() const { return client_ ? client_->get() : listener_.get(); }

    /// Takes the next client, unless there is one or nobody waits. @return whether one has come
    bool takeClient();

    /// What the client has written, possibly nothing. When it has gone, there is no client from then on.
    std::string read();

    /// Sends as much as there is room for; the rest is lost, and all of it without a client.
    void write(std::string_view text);

    void endConnection() { client_.reset(); }

private:
    Descriptor listener_;
    std::optional<Descriptor> client_;
    int port_ = 0;
};

} // namespace zint
