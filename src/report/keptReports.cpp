#include "report/keptReports.h"

#include "report/reportSections.h"
#include "shared/keptFiles.h"
#include "shared/module1.h"
#include "shared/textFile.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace zint {
namespace {

constexpr KeptKind reports{.folder = "", .extension = ".json", .most = 50};

/// A VIN as a folder's name; vehicles that tell none share one.
std::string folderName(const VehicleFacts& facts)
{
    std::string name = vinOf(facts);
    std::erase_if(name, [](char c) { return !((c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z')); });
    return name.empty() ? "unknown" : name;
}

/// @param rights that its owner keeps
void hideFromOthers(const std::string& path, std::filesystem::perms rights)
{
    std::error_code ignored; // where a file system has no such rights
    std::filesystem::permissions(utf8Path(path), rights, ignored);
}

} // namespace

std::string KeptReports::folderOf(const VehicleFacts& facts) const
{
    return folder_ + "/" + folderName(facts);
}

std::string KeptReports::keep(const VehicleFacts& facts, const std::string& json) const
{
    const KeptFiles files(folderOf(facts), reports);
    std::string path = files.newPath(nameText_(facts.time));
    hideFromOthers(folder_, std::filesystem::perms::owner_all);
    replaceFile(path, [&json](std::ostream& stream) { stream << json; });
    hideFromOthers(path, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    files.prune();
    return path;
}

} // namespace zint
