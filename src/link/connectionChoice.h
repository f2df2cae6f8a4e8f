#pragma once

#include <string>

namespace zint {

/// What the user chose in the launcher; a tool reads it when it is opened.
struct ConnectionChoice {
    int portNumber = 1;            ///< 1 to 8
    std::string portName = "com1"; ///< as shown, in front of each status word
    std::string speed = "9600";    ///< bits per second, as shown
    std::string device;            ///< what the port stands for, such as "/dev/ttyUSB0"; empty when not known

    std::string lineSettings() const { return speed + ",N,8,1"; }
};

} // namespace zint
