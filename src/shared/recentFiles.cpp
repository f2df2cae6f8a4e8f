#include "shared/recentFiles.h"

#include "shared/settingsStore.h"

#include <algorithm>
#include <utility>

namespace zint {
namespace {

/// @param place from 0
std::string keyOf(std::size_t place) { return "recent" + std::to_string(place + 1); }

} // namespace

RecentFiles::RecentFiles(SettingsStore& settings, std::string section)
    : settings_(settings), section_(std::move(section))
{
}

std::vector<std::string> RecentFiles::paths() const
{
    std::vector<std::string> paths;
    for (std::size_t place = 0; place < most; ++place) {
        std::string path = settings_.get(section_, keyOf(place));
        if (!path.empty() && std::ranges::find(paths, path) == paths.end())
            paths.push_back(std::move(path));
    }
    return paths;
}

void RecentFiles::add(const std::string& path)
{
    std::vector<std::string> paths = pathsByNow();
    std::erase(paths, path);
    paths.insert(paths.begin(), path);
    save(paths);
}

void RecentFiles::remove(const std::string& path)
{
    std::vector<std::string> paths = pathsByNow();
    std::erase(paths, path);
    save(paths);
}

void RecentFiles::clear() { save({}); }

/// With what other programs have changed.
std::vector<std::string> RecentFiles::pathsByNow()
{
    settings_.flush();
    return paths();
}

/// A list that can't be written is not worth a message: the settings tell of it when the program ends.
void RecentFiles::save(const std::vector<std::string>& paths)
{
    for (std::size_t place = 0; place < most; ++place) {
        if (place < paths.size())
            settings_.save(section_, keyOf(place), paths[place]);
        else
            settings_.remove(section_, keyOf(place));
    }
    settings_.flush();
}

} // namespace zint
