// Requests per second over a serial line: the program's link against a blocking loop, in turn on the same
// adapter.

#include "blockingLoop.h"
#include "link/adapterLink.h"
#include "platform/qtSerialPort.h"
#include "platform/qtTimer.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int rounds = 7;
constexpr std::string_view request = "010C";

[[noreturn]] void fail(const char* why)
{
    std::fprintf(stderr, "bench_linkRate: %s\n", why);
    std::exit(1);
}

/// Sends one request after the other, as a polling run does.
class Run final : private zint::AdapterLink::Listener {
public:
    Run(const std::string& path, int count)
        : port_(gate_, [path](int) { return path; }), timer_(gate_), link_(port_, timer_, {}, *this),
          left_(count)
    {
    }

    double secondsTaken()
    {
        gate_.run([this] { opened_ = link_.open(); });
        if (!opened_)
            fail(link_.status().c_str());
        QCoreApplication::exec();
        return std::chrono::duration<double>(end_ - start_).count();
    }

private:
    void linkReady() override
    {
        start_ = Clock::now();
        link_.send(request);
    }

    void linkReply(std::string_view /*reply*/) override
    {
        if (--left_ > 0) {
            link_.send(request);
            return;
        }
        end_ = Clock::now();
        link_.close();
        QCoreApplication::quit();
    }

    void linkReceived() override {}
    void linkEvent(int /*event*/) override {}
    void linkTimedOut() override { fail("the adapter does not answer"); }
    void linkLost() override { fail("the adapter has gone"); }

    zint::EventGate gate_;
    zint::QtSerialPort port_;
    zint::QtTimer timer_;
    zint::AdapterLink link_;
    int left_;
    bool opened_ = false;
    Clock::time_point start_;
    Clock::time_point end_;
};

double blockingSeconds(const char* path, int count)
{
    const auto start = Clock::now();
    if (blockingLoop(path, "010C\r", count) != 0)
        fail("the blocking loop can't use the port");
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    if (argc != 4)
        fail("usage: bench_linkRate PATH COUNT DESCRIPTION");
    const int count = std::max(1, std::atoi(argv[2]));
    std::vector<double> link;
    std::vector<double> blocking;
    for (int round = 0; round < rounds; ++round) {
        link.push_back(count / Run(argv[1], count).secondsTaken());
        blocking.push_back(count / blockingSeconds(argv[1], count));
    }
    std::printf(
        "link, %s: %.0f requests/s, blocking loop %.0f (medians of %d): ratio %.2f (goal: at least 0.9)\n",
        argv[3], median(link), median(blocking), rounds, median(link) / median(blocking));
    return 0;
}
