#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zint {

#ifdef _WIN32
inline constexpr bool hasNumberedPorts = true; ///< the system itself calls its ports COM1 to COM256
inline constexpr std::string_view exampleDevice = "COM10";
#else
inline constexpr bool hasNumberedPorts = false;
inline constexpr std::string_view exampleDevice = "/dev/ttyUSB0";
#endif

/// What a port's assignment stands for.
struct PortLocation {
    enum class Kind {
        nothing,
        device,    ///< "/dev/ttyUSB0", "COM7", "ttyUSB0"; "/dev/ttyUSB0@115200" has a speed of its own
        simulated, ///< "simulated": the simulated vehicle; "simulated:protocol=can units=2" has options
        network,   ///< "tcp:HOST:PORT": an adapter or a bridge in the network
        recording, ///< "replay:FILE": a transcript in place of an adapter; "replay-timed:FILE" takes its time
    };

    /// Wi-Fi adapters wait for connections here.
    static constexpr int usualTcpPort = 35000;

    static constexpr std::string_view simulatedText = "simulated";

    Kind kind = Kind::nothing;
    std::string path;                 ///< a device's path, a host, a file or options, by the kind
    int tcpPort = usualTcpPort;       ///< 1 to 65535
    std::optional<int> bitsPerSecond; ///< of a device, in place of the launcher's line speed
    bool isTimed = false;             ///< a recording answers as late as it was recorded
    std::string problem; ///< why it can't be used: "tcp:HOST:PORT needs a port ..."; mostly empty

    /// Whether the launcher's line speed, or one in its place, means anything.
    bool hasSpeed() const { return kind == Kind::device; }

    /// As users read it, without speed and problem: "/dev/ttyUSB0", "192.168.0.10:35000", "simulated
    /// vehicle", "nothing connected"; a recording with its file, a simulation with its options.
    std::string text() const;

    bool operator==(const PortLocation&) const = default;
};

/// Reads an assignment. Any text has a meaning, if only that of a device that does not exist.
PortLocation portLocation(std::string_view assignment);

} // namespace zint
