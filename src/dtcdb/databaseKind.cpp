#include "dtcdb/databaseKind.h"

#include "shared/module1.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

namespace zint {

DatabaseKind databaseKind(const std::string& path)
{
    if (!fileExists(path)) // a folder would open, and hold no bytes
        return DatabaseKind::unreadable;
    std::ifstream file(utf8Path(path), std::ios::binary);
    if (!file)
        return DatabaseKind::unreadable;
    std::array<char, 19> start{};
    file.read(start.data(), start.size());
    const std::string_view head(start.data(), static_cast<std::size_t>(file.gcount()));
    if (head.empty())
        return DatabaseKind::empty;
    if (head.starts_with("SQLite format 3"))
        return DatabaseKind::sqlite;
    const std::string_view engine = textAt(head, 5, 15);
    return engine == "Standard Jet DB" || engine == "Standard ACE DB" ? DatabaseKind::access
                                                                      : DatabaseKind::other;
}

bool isSetUp(const std::string& databasePath)
{
    std::error_code unknown;
    return fileExists(databasePath) && std::filesystem::file_size(utf8Path(databasePath), unknown) > 0;
}

} // namespace zint
