#pragma once

#include "link/serialPort.h"
#include "link/wireRecord.h"

#include <memory>
#include <utility>

namespace zint {

/// A port of which a record is made. What the port drops, before and behind the exchange, is in no record.
class RecordingPort final : public SerialPort {
public:
    /// Tells the port and the speed in words, at each opening.
    using Describe = std::function<std::string(PortNumber, int bitsPerSecond)>;

    /// @param record outlives this
    RecordingPort(std::unique_ptr<SerialPort> port, WireRecord& record, Describe describe);

    void open(PortNumber number, int bitsPerSecond) override;
    void close() override;
    bool isOpen() const override { return port_->isOpen(); }
    void output(std::string_view text) override;
    std::string input() override;

private:
    std::unique_ptr<SerialPort> port_;
    WireRecord& record_;
    Describe describe_;
};

} // namespace zint
