// Requests per second over a serial line, or a connection: the program's link against a blocking loop, in
// turn on the same adapter.

#include "compareRates.h"
#include "link/adapterLink.h"
#include "platform/qtSerialPort.h"
#include "platform/qtTimer.h"
#include "platform/tcpPort.h"

namespace {

constexpr std::string_view request = "010C";

std::unique_ptr<zint::SerialPort> portAt(zint::EventGate& gate, const std::string& path)
{
    const zint::PortLocation place = zint::portLocation(path);
    if (place.kind == zint::PortLocation::Kind::network)
        return std::make_unique<zint::TcpPort>(gate, [place](zint::PortNumber) { return place; });
    return std::make_unique<zint::QtSerialPort>(gate, [path](zint::PortNumber) { return path; });
}

/// Sends one request after the other, as a polling run does.
class Run final : private zint::AdapterLink::Listener {
public:
    Run(const std::string& path, int count)
        : port_(portAt(gate_, path)), timer_(gate_), link_({*port_, {}, timer_}, *this), left_(count)
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

} // namespace

int main(int argc, char* argv[])
{
    return compareRates(
        argc, argv, {.name = "link", .counted = "requests", .atLeast = 0.9},
        [](const char* path, int count) { return Run(path, count).secondsTaken(); },
        [](const char* path, int count) { return blockingSeconds(path, "010C\r", count); });
}
