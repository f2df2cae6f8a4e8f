#pragma once

namespace zint {

/// Which part of a run the chart shows: the last minutes while polling runs, the whole run, or what the user
/// went to. Times are seconds since the first start of polling.
class ChartRange {
public:
    static constexpr double shortest = 0.1; ///< closer there is hardly a sample to see

    double from() const;
    double to() const;

    /// Whether the newest moment of a run stays in sight.
    bool follows() const { return shown_ == Shown::newest; }

    /// Tells where the run has come to. A start begins to follow it; its end shows the whole run to those who
    /// followed.
    void setEnd(double end, bool isRunning);

    /// What is shown of a run that is on, in seconds, once there is so much; goes back to following it.
    void setWindow(double seconds);

    void showAll() { shown_ = Shown::all; }

    /// Goes to a part, as far as there is one. A part that reaches the newest moment of a run goes on with
    /// it; one that is all of a run is no part.
    void take(double from, double to);

private:
    enum class Shown { newest, all, part };

    Shown shown_ = Shown::all;
    double window_ = 300;
    double span_ = 300; ///< of what is shown, unless it is the whole run
    double from_ = 0;   ///< of a part
    double end_ = 0;
    bool isRunning_ = false;
};

} // namespace zint
