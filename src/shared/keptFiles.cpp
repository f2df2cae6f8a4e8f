#include "shared/keptFiles.h"

#include "shared/fileError.h"
#include "shared/fileLock.h"
#include "shared/module1.h"
#include "shared/systemFiles.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <random>
#include <system_error>
#include <utility>

namespace zint {
namespace {

/// Of no meaning: two programs may keep files at the same time.
std::string numberText()
{
    static std::mt19937 random{std::random_device{}()};
    return std::to_string(random());
}

namespace fs = std::filesystem;

} // namespace

std::optional<KeptEntry> chooseToRecover(Prompts& prompts, const std::vector<KeptEntry>& entries,
                                         const std::string& what)
{
    if (entries.empty()) {
        prompts.message("There is no unsaved " + what + " to recover.");
        return std::nullopt;
    }
    std::vector<std::string> lines;
    lines.reserve(entries.size());
    for (const KeptEntry& entry : entries)
        lines.push_back(entry.text);
    const std::string title = "Recover Unsaved " + upperCase(what.substr(0, 1)) + what.substr(1);
    const auto chosen = prompts.choose("Unsaved " + what + "s", title, lines);
    return chosen ? std::optional(entries.at(*chosen)) : std::nullopt;
}

KeptFiles::KeptFiles(const std::string& userDataFolder, const KeptKind& kind, std::uintmax_t mostBytes)
    : folder_(utf8Text(utf8Path(userDataFolder + kind.folder).make_preferred())), extension_(kind.extension),
      most_(kind.most), mostBytes_(mostBytes)
{
}

std::vector<KeptFiles::File> KeptFiles::all() const
{
    std::vector<File> files;
    std::error_code error;
    fs::directory_iterator entry(utf8Path(folder_), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        if (entry->path().extension() != extension_)
            continue;
        std::error_code none; // it is gone by now, or no file
        const std::uintmax_t size = entry->file_size(none);
        if (none)
            continue;
        const auto changed = lastChange(entry->path());
        if (const std::string path = utf8Text(entry->path()); changed && !FileLock::isTaken(path))
            files.push_back({path, *changed, size});
    }
    std::ranges::sort(files, std::greater(), &File::changed);
    return files;
}

std::vector<KeptFiles::File> KeptFiles::newestFirst() const
{
    std::vector<File> files = all();
    files.resize(std::min(files.size(), most_));
    return files;
}

std::string KeptFiles::newPath() const { return newPath("unsaved-" + numberText()); }

std::string KeptFiles::newPath(const std::string& name) const
{
    std::error_code error;
    fs::create_directories(utf8Path(folder_), error);
    if (error)
        throw FileError("The folder \"" + folder_ + "\" can't be made: " + error.message());
    std::string path = utf8Text(utf8Path(folder_) / (name + extension_));
    while (fs::exists(utf8Path(path), error))
        path = utf8Text(utf8Path(folder_) / (name + "-" + numberText() + extension_));
    return path;
}

void KeptFiles::prune(const std::function<bool(const File&)>& lasts) const
{
    std::vector<File> files;
    std::vector<File> others;
    for (const File& file : all())
        (files.empty() || lasts(file) ? files : others).push_back(file);
    std::ranges::copy(others, std::back_inserter(files));
    std::error_code ignored;
    std::uintmax_t bytes = 0;
    for (std::size_t i = 0; i < files.size(); ++i) {
        bytes += files[i].size;
        if (i >= most_ || (i > 0 && bytes > mostBytes_))
            fs::remove(utf8Path(files[i].path), ignored);
    }
}

} // namespace zint
