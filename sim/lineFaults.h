#pragma once

#include "sim/protocols.h"
#include "sim/simulationOptions.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace zint {

/// What goes wrong between the vehicle and the adapter, in each so manieth reply that it can happen to.
class LineFaults {
public:
    explicit LineFaults(const AdapterOptions& options);

    /// Spoils the lines of a reply, which may be none.
    void apply(std::vector<std::string>& lines, Framing framing);

    static constexpr std::size_t kinds = 4;

private:
    std::array<int, kinds> every_{};
    std::array<int, kinds> replies_{}; // that each could have happened to
};

} // namespace zint
