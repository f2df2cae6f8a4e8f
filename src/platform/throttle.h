#pragma once

#include <QTimer>

#include <chrono>
#include <functional>
#include <utility>

namespace zint {

/// Shows what changes as often as the eye can follow: at once after a pause, else a little later together
/// with what changes until then. The last change is always shown.
class Throttle {
public:
    /// @param show is called by request() and from the event loop
    explicit Throttle(std::function<void()> show) : show_(std::move(show))
    {
        using namespace std::chrono_literals;
        pause_.setSingleShot(true);
        pause_.setInterval(40ms);
        QObject::connect(&pause_, &QTimer::timeout, &pause_, [this] {
            if (requested_)
                showNow();
        });
    }

    void request()
    {
        requested_ = true;
        if (!pause_.isActive())
            showNow();
    }

private:
    void showNow()
    {
        requested_ = false;
        show_();
        pause_.start();
    }

    std::function<void()> show_;
    QTimer pause_;
    bool requested_ = false;
};

} // namespace zint
