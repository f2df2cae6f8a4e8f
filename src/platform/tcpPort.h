#pragma once

#include "link/portLocation.h"
#include "platform/devicePort.h"

#include <chrono>
#include <functional>
#include <memory>

class QTcpSocket;

namespace zint {

/// An adapter in the network, or a bridge to one: the bytes are those of a serial line. While it connects,
/// the windows are painted, but take nothing from the user.
class TcpPort final : public DevicePort {
public:
    /// Tells at each opening where the adapter is: a location of the kind `network`.
    using Locate = std::function<PortLocation(PortNumber)>;

    static constexpr std::chrono::milliseconds usualPatience{5000};

    /// @param patience how long connecting may take
    TcpPort(EventGate& gate, Locate locate, std::chrono::milliseconds patience = usualPatience);

    void open(PortNumber number, int bitsPerSecond) override;

private:
    TcpPort(EventGate& gate, Locate locate, std::chrono::milliseconds patience,
            std::unique_ptr<QTcpSocket> socket);

    void connectTo(const PortLocation& place);
    std::size_t writeNow(std::string_view text) override;
    void closeDevice() override;

    Locate locate_;
    std::chrono::milliseconds patience_;
    QTcpSocket& socket_; ///< the base's device
};

} // namespace zint
