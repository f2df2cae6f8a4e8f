#include "designer/keptDesigns.h"

#include "designer/designDifference.h"
#include "shared/fileError.h"
#include "shared/module1.h"
#include "shared/textFile.h"

#include <exception>
#include <filesystem>
#include <optional>
#include <sstream>
#include <system_error>
#include <utility>

namespace zint {
namespace {

constexpr std::size_t mostKept = 10;

DesignDraft loadDraft(const std::string& path)
{
    DesignDraft draft;
    readFile(path, [&draft](std::istream& stream) { draft = readDraft(stream); });
    return draft;
}

std::optional<DesignDraft> tryToLoad(const std::string& path)
{
    try {
        return loadDraft(path);
    } catch (const std::exception&) { // a file that is damaged, or gone by now
        return std::nullopt;
    }
}

DesignContent contentOf(const DesignDraft& draft)
{
    return {draft.grid, draft.design.extraCommands, draft.design.sampleSpeed};
}

std::string textOf(const DesignGrid& grid, const Design& design)
{
    std::ostringstream text;
    writeDraft(text, grid, design);
    return text.str();
}

} // namespace

KeptDesigns::KeptDesigns(std::string folder,
                         std::function<std::string(std::chrono::system_clock::time_point)> dateText)
    : files_(std::move(folder), ".obc", mostKept), dateText_(std::move(dateText))
{
}

void KeptDesigns::keep(const DesignGrid& grid, const Design& design)
{
    if (edited_.empty()) {
        const std::string path = files_.newPath();
        lock_.take(path); // before there is a file that others could see
        edited_ = path;
    }
    replaceFile(edited_, [&](std::ostream& stream) { writeDraft(stream, grid, design); });
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

std::vector<KeptEntry> KeptDesigns::list(const DesignContent& shown) const
{
    std::vector<KeptEntry> entries;
    for (const KeptFiles::File& file : files_.newestFirst()) {
        if (file.path == edited_) // some file systems have no locks
            continue;
        if (const auto draft = tryToLoad(file.path))
            entries.push_back({file.path,
                               dateText_(file.changed) + "   " + summaryOf(draft->grid) + ": " +
                                   differenceText(contentOf(*draft), shown),
                               file.size});
    }
    return entries;
}

DesignDraft KeptDesigns::bringBack(const KeptEntry& entry)
{
    FileLock lock;
    if (!lock.take(entry.path))
        throw FileError("This design can't be recovered: another running Zint is editing it.");
    DesignDraft draft = loadDraft(entry.path);
    leave();
    lock_ = std::move(lock);
    edited_ = entry.path;
    return draft;
}

bool KeptDesigns::resume(const DesignGrid& grid, const Design& design)
{
    const auto files = files_.newestFirst();
    if (files.empty())
        return false;
    const auto newest = tryToLoad(files.front().path);
    if (!newest || textOf(newest->grid, newest->design) != textOf(grid, design))
        return false;
    if (!lock_.take(files.front().path))
        return false;
    edited_ = files.front().path;
    return true;
}

} // namespace zint
