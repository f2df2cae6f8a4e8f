#pragma once

#include "compareRates.h"
#include "link/adapterLink.h"
#include "platform/qtSerialPort.h"
#include "platform/qtTimer.h"
#include "platform/tcpPort.h"

#include <functional>
#include <memory>

inline constexpr std::string_view request = "010C";

/// Sends one request after the other through a port of its gate, as a polling run does.
class LinkRun final : private zint::AdapterLink::Listener {
public:
    using MakePort = std::function<std::unique_ptr<zint::SerialPort>(zint::EventGate&)>;

    LinkRun(const MakePort& makePort, int count)
        : port_(makePort(gate_)), timer_(gate_), link_({*port_, {}, timer_}, *this), left_(count)
    {
    }

    double secondsTaken()
    {
        gate_.run([this] { opened_ = link_.open(); });
        if (!opened_)
            fail(link_.lastFailure().c_str());
        QCoreApplication::exec();
        return seconds_;
    }

private:
    void linkReady() override
    {
        start_ = RateClock::now();
        link_.send(request);
    }

    void linkReply(std::string_view /*reply*/) override
    {
        if (--left_ > 0) {
            link_.send(request);
            return;
        }
        seconds_ = secondsSince(start_);
        link_.close();
        QCoreApplication::quit();
    }

    void linkReceived() override {}
    void linkNotice(std::string_view /*text*/) override {}
    void linkTimedOut() override { fail("the adapter does not answer"); }
    void linkLost() override { fail("the adapter has gone"); }

    zint::EventGate gate_;
    std::unique_ptr<zint::SerialPort> port_;
    zint::QtTimer timer_;
    zint::AdapterLink link_;
    int left_;
    bool opened_ = false;
    RateClock::time_point start_;
    double seconds_ = 0;
};

/// @param place a device's path, or "tcp:HOST:PORT"
inline LinkRun::MakePort devicePort(const char* place)
{
    return [place](zint::EventGate& gate) -> std::unique_ptr<zint::SerialPort> {
        const zint::PortLocation location = zint::portLocation(place);
        if (location.kind == zint::PortLocation::Kind::network)
            return std::make_unique<zint::TcpPort>(gate, [location](zint::PortNumber) { return location; });
        return std::make_unique<zint::QtSerialPort>(gate,
                                                    [location](zint::PortNumber) { return location.path; });
    };
}
