#pragma once

#include "shared/settingsStore.h"

#include <cstddef>
#include <deque>
#include <string>

namespace zint {

/// The commands that this user typed, the last ones of earlier runs too, and the way back through them.
class CommandHistory {
public:
    static constexpr std::size_t most = 100;

    /// @param settings outlives the history
    explicit CommandHistory(SettingsStore& settings);

    void add(const std::string& command); ///< the one that was sent; the way begins anew

    // What the command box shows next. A line that was typed and not sent comes back behind the newest
    // command.
    std::string older(const std::string& shown);
    std::string newer(const std::string& shown);

private:
    void keep(const std::string& command);
    void keepIfTyped(const std::string& shown);

    SettingsStore& settings_;
    std::deque<std::string> commands_; ///< the oldest first
    std::size_t position_ = 0;         ///< of the one that is shown, behind the last one at first
    std::string typed_;
};

} // namespace zint
