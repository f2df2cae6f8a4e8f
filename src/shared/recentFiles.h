#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zint {

class SettingsStore;

/// The files that a tool saved or opened last, the newest first, as the settings keep them. Paths are UTF-8.
///
/// Several programs may run. Each change is made to what the settings hold by then, and written at once.
class RecentFiles {
public:
    static constexpr std::size_t most = 8;

    /// @param settings outlive this. @param section of the tool
    RecentFiles(SettingsStore& settings, std::string section);

    std::vector<std::string> paths() const;

    void add(const std::string& path); ///< to the front; the oldest goes when there are too many
    void remove(const std::string& path);
    void clear();

private:
    std::vector<std::string> pathsByNow();
    void save(const std::vector<std::string>& paths);

    SettingsStore& settings_;
    std::string section_;
};

} // namespace zint
