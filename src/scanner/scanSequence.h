#pragma once

#include "scanner/scanParameters.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zint {

/// A request of a scan.
struct ScanRequest {
    std::string text;           ///< as it is sent
    std::string expectedPrefix; ///< what a positive reply begins with
    std::string_view name; ///< of the parameter that is asked for; empty when the program does not know it
};

/// The requests of a scan: all PIDs of a mode, then those of the next.
class ScanSequence {
public:
    ScanSequence() = default; ///< nothing to send

    /// The bounds are taken from the boxes now.
    explicit ScanSequence(const ScanParameters& boxes);

    /// The next request; nothing when the scan is complete.
    /// @param boxes as they are now: header, suffix and first PID may change during a scan
    std::optional<ScanRequest> next(const ScanParameters& boxes);

    /// Whether next() has just passed over mode 04.
    bool hasSkipped() const { return hasSkipped_; }

    /// How many requests are left, if the boxes stay as they are.
    std::int64_t left(const ScanParameters& boxes) const;

private:
    void advance(const ScanParameters& boxes);

    std::int32_t curMode_ = 0;
    std::int32_t curPid_ = 0;
    std::int32_t endMode_ = -1;
    std::int32_t endPid_ = -1;
    bool hasPid_ = false;
    bool widePid_ = false; ///< PIDs have four digits
    bool hasSuffix_ = false;
    bool hasSkipped_ = false;
};

} // namespace zint
