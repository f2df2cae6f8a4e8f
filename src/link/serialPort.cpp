#include "link/serialPort.h"

#include <utility>

namespace zint {

std::string SerialPort::takeInput(std::string& received) const
{
    const auto length = static_cast<std::size_t>(inputLength_);
    if (length == 0 || length >= received.size())
        return std::exchange(received, {});
    std::string taken = received.substr(0, length);
    received.erase(0, length);
    return taken;
}

} // namespace zint
