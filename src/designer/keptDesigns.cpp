#include "designer/keptDesigns.h"

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
    const std::string path = edited_.empty() ? files_.newPath() : edited_;
    replaceFile(path, [&](std::ostream& stream) { writeDraft(stream, grid, design); });
    edited_ = path;
}

void KeptDesigns::forget()
{
    std::error_code ignored;
    std::filesystem::remove(utf8Path(std::exchange(edited_, {})), ignored);
}

void KeptDesigns::leave()
{
    edited_.clear();
    files_.prune();
}

std::vector<KeptEntry> KeptDesigns::list() const
{
    std::vector<KeptEntry> entries;
    for (const KeptFiles::File& file : files_.newestFirst()) {
        if (file.path == edited_)
            continue;
        if (const auto draft = tryToLoad(file.path))
            entries.push_back(
                {file.path, dateText_(file.changed) + "   " + summaryOf(draft->grid), file.size});
    }
    return entries;
}

DesignDraft KeptDesigns::bringBack(const KeptEntry& entry)
{
    DesignDraft draft = loadDraft(entry.path);
    leave();
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
    edited_ = files.front().path;
    return true;
}

} // namespace zint
