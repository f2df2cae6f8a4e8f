#pragma once

#include "link/linkCounters.h"
#include "runner/pollLimits.h"
#include "shared/controls.h"

#include <string>
#include <vector>

namespace zint {

/// What the poll runner shows; members are named after its controls.
struct PollPanel {
    /// How a row of the grid is shaded.
    enum class Shade {
        usual,
        constant, ///< all values were the same
        error     ///< there was a bad reply
    };

    struct Row {
        std::string description;
        std::string value;
        bool isWords = false; ///< the value tells why there is no number
        std::string samples;
        std::string minimum;
        std::string maximum;
        bool minimumIsNew = false; ///< differs from what the last refresh showed
        bool maximumIsNew = false;
        Shade shade = Shade::usual;
        std::string toolTip; ///< good and bad replies, and the rate of this run; empty before the first
    };

    std::string titleLab;
    std::string statusBox = "Ready";
    std::string hint;        ///< what the replies, or none, mean, to stand behind the status; mostly empty
    std::string keepFailure; ///< that the run's samples are not kept, and why; mostly empty
    std::string statLab1 = "0 Loops, 0 Events, 0 sec, 0 Events/s";
    std::string labelStats = LinkCounters::initialText;
    std::string textSampleCnt = std::to_string(pollLimits::usualLoops);
    std::string timeLimit;                                                    ///< seconds; empty: none
    std::string scnUpdate = std::to_string(pollLimits::usualRefresh.count()); ///< seconds
    bool reconnect = false; ///< by itself, when the adapter is gone or has lost its settings
    bool combine = false;   ///< several parameters in one request
    std::string lengthHint; ///< how long a run takes, why it has ended, or when an opened one began
    std::string comStart = "&Start Polling";
    std::vector<Row> obdGrid;
    ProgressBar ProgressBar1; ///< of the loops or the time, whatever ends first
};

} // namespace zint
