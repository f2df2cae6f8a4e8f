#include "designer/keptDesigns.h"

#include "catalogue/designFile.h"
#include "designer/designDifference.h"
#include "shared/fileError.h"
#include "shared/module1.h"

#include <exception>
#include <filesystem>
#include <limits>
#include <optional>
#include <system_error>
#include <utility>

namespace zint {
namespace {

Design loadDraft(const std::string& path)
{
    return loadDesign(path, std::numeric_limits<std::size_t>::max());
}

std::optional<Design> tryToLoad(const std::string& path)
{
    try {
        return loadDraft(path);
    } catch (const std::exception&) { // a file that is damaged, or gone by now
        return std::nullopt;
    }
}

} // namespace

KeptDesigns::KeptDesigns(const std::string& userDataFolder, DateText dateText)
    : files_(userDataFolder, keptKinds::designs), dateText_(std::move(dateText))
{
}

void KeptDesigns::keep(const Design& draft)
{
    if (edited_.empty()) {
        const std::string path = files_.newPath();
        lock_.take(path); // before there is a file that others could see
        edited_ = path;
    }
    saveDesign(edited_, draft);
}

void KeptDesigns::forget()
{
    std::error_code ignored;
    std::filesystem::remove(utf8Path(std::exchange(edited_, {})), ignored);
    lock_.release();
}

void KeptDesigns::leave()
{
    edited_.clear();
    lock_.release();
    files_.prune();
}

std::vector<KeptEntry> KeptDesigns::list(const Design& shown) const
{
    std::vector<KeptEntry> entries;
    for (const KeptFiles::File& file : files_.newestFirst()) {
        if (file.path == edited_) // some file systems have no locks
            continue;
        if (const auto draft = tryToLoad(file.path))
            entries.push_back(
                {file.path,
                 dateText_(file.changed) + "   " + summaryOf(*draft) + ": " + differenceText(*draft, shown),
                 file.size});
    }
    return entries;
}

Design KeptDesigns::bringBack(const KeptEntry& entry)
{
    FileLock lock;
    if (!lock.take(entry.path))
        throw FileError("This design can't be recovered: another running Zint is editing it.");
    Design draft = loadDraft(entry.path);
    leave();
    lock_ = std::move(lock);
    edited_ = entry.path;
    return draft;
}

bool KeptDesigns::resume(const Design& draft)
{
    const auto files = files_.newestFirst();
    if (files.empty() || tryToLoad(files.front().path) != draft || !lock_.take(files.front().path))
        return false;
    edited_ = files.front().path;
    return true;
}

} // namespace zint
