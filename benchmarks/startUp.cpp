// Time from the start of a process until its first window is on the screen, for programs in turn.

#include "measure.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>
#include <xcb/xcb.h>

namespace {

constexpr int rounds = 25;
constexpr int patienceMs = 20000;

/// Watches the windows that appear on the screen; no window manager stands between.
class Screen {
public:
    Screen() : connection_(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(connection_) != 0)
            fail("there is no X display");
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
        const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(connection_, root, XCB_CW_EVENT_MASK, &mask);
        xcb_flush(connection_);
    }

    void forgetEvents()
    {
        while (xcb_generic_event_t* event = xcb_poll_for_event(connection_))
            std::free(event);
    }

    void waitForWindow()
    {
        for (;;) {
            while (xcb_generic_event_t* event = xcb_poll_for_event(connection_)) {
                const bool mapped = (event->response_type & 0x7f) == XCB_MAP_NOTIFY;
                std::free(event);
                if (mapped)
                    return;
            }
            pollfd wait{xcb_get_file_descriptor(connection_), POLLIN, 0};
            if (poll(&wait, 1, patienceMs) <= 0)
                fail("no window appeared");
        }
    }

private:
    xcb_connection_t* connection_;
};

double millisecondsToWindow(Screen& screen, const char* program)
{
    screen.forgetEvents();
    const auto start = RateClock::now();
    const pid_t child = fork();
    if (child < 0)
        fail("fork failed");
    if (child == 0) {
        execl(program, program, static_cast<char*>(nullptr));
        _exit(127);
    }
    screen.waitForWindow();
    const double took = secondsSince(start) * 1e3;
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    return took;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc != 4)
        fail("usage: bench_startUp PROGRAM EMPTY-WINDOW LABELLED-WINDOW");
    Screen screen;
    std::array<std::vector<double>, 3> times;
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < times.size(); ++i)
            times[i].push_back(millisecondsToWindow(screen, argv[i + 1]));
    }
    const double program = median(times[0]);
    const double empty = median(times[1]);
    const double labelled = median(times[2]);
    std::printf("start-up: launcher %.1f ms, empty window %.1f ms (medians of %d): ratio %.2f (%s)\n",
                program, empty, rounds, program / empty, atMost(1.3, program / empty).c_str());
    std::printf("start-up: window with a menu and a button %.1f ms: ratio %.2f to the empty one, launcher to "
                "it %.2f\n",
                labelled, labelled / empty, program / labelled);
    return benchmarkStatus();
}
