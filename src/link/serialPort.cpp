#include "link/serialPort.h"

#include <utility>

namespace zint {

std::string SerialPort::takeInput(std::string& received) const
{
    const auto length = static_cast<std::size_t>(inputLength_);
    std::string taken = std::exchange(received, {});
    if (length > 0 && length < taken.size()) {
        received = taken.substr(length);
        taken.resize(length);
    }
    if (inputMode_ == InputMode::text)
        std::erase(taken, '\0');
    return taken;
}

} // namespace zint
