#include "link/recordingPort.h"

#include "link/commError.h"

namespace zint {

RecordingPort::RecordingPort(std::unique_ptr<SerialPort> port, WireRecord& record, Describe describe)
    : port_(std::move(port)), record_(record), describe_(std::move(describe))
{
    port_->onNotice = [this](PortNotice notice) {
        if (notice == PortNotice::deviceGone)
            record_.lost();
        if (onNotice)
            onNotice(notice);
    };
}

void RecordingPort::open(PortNumber number, int bitsPerSecond)
{
    try {
        port_->open(number, bitsPerSecond);
    } catch (const CommError& error) {
        record_.notOpened(describe_(number, bitsPerSecond) + ": " + error.what());
        throw;
    }
    record_.opened(describe_(number, bitsPerSecond));
}

void RecordingPort::close()
{
    const bool wasOpen = port_->isOpen();
    port_->close();
    if (wasOpen)
        record_.closed();
}

void RecordingPort::output(std::string_view text)
{
    port_->output(text);
    record_.written(text);
}

std::string RecordingPort::input()
{
    std::string text = port_->input();
    if (!text.empty())
        record_.received(text);
    return text;
}

} // namespace zint
