#pragma once

#include <QLockFile>
#include <QString>

#include <chrono>
#include <memory>
#include <optional>

namespace zint {

/// A file that exists as long as the program runs, so that a start after a crash finds one left behind.
class SessionMark {
public:
    /// @param folder of the files; is made
    explicit SessionMark(const QString& folder);

    /// When a session began that was cut off since the last start; nothing when there was none.
    std::optional<std::chrono::system_clock::time_point> cutOffSince() const { return cutOffSince_; }

private:
    std::unique_ptr<QLockFile> own_;
    std::optional<std::chrono::system_clock::time_point> cutOffSince_;
};

} // namespace zint
