#pragma once

#include <string>

namespace zint {

/// What came in place of an answer: noise is what no adapter sends at the speed that it is read with.
enum class Heard { nothing, noise, text };

/// What the user chose in the launcher; a tool reads it when it is opened.
struct ConnectionChoice {
    int portNumber = 1;            ///< 1 to 8
    std::string portName = "com1"; ///< as shown, in front of each status word
    std::string speed = "9600";    ///< bits per second, as shown
    std::string device = {};       ///< what the port stands for, as shown: "/dev/ttyUSB0"

    std::string lineSettings() const { return speed + ",N,8,1"; }

    /// What to do when the adapter does not answer.
    std::string advice() const
    {
        return "Check port (" + device + ") and speed (" + speed +
               ") in the launcher; most adapters use 38400.";
    }

    /// The same, with what came in place of an answer.
    std::string silenceReason(Heard heard) const
    {
        return "No answer on " + portName + ": " +
               (heard == Heard::nothing ? "nothing was received. "
                : heard == Heard::noise ? "what was received is not readable. "
                                        : "what was received is not complete. ") +
               advice();
    }
};

} // namespace zint
