// Arbitrary bytes as the file of a kept run: what of it can be read is kept so that it reads the same again.

#include "fuzz/fuzzInput.h"
#include "runner/keptRuns.h"
#include "samples/dataLog.h"
#include "samples/debugDump.h"
#include "shared/fileError.h"
#include "support/temporaryFolder.h"

#include <filesystem>
#include <optional>
#include <sstream>

namespace zint {
namespace {

std::optional<KeptRun> load(const std::string& path)
{
    try {
        return KeptRuns::load({.path = path, .size = 1});
    } catch (const FileError& error) {
        require(std::string(error.what()).find(path) != std::string::npos, "a refusal names the file");
        return std::nullopt;
    }
}

std::string dumpOf(const KeptRun& run)
{
    std::ostringstream text;
    writeLog(text, run.design, run.samples, std::to_string(run.firstStart.time_since_epoch().count()));
    writeDebugDump(text, run.samples);
    return text.str();
}

} // namespace

void fuzz(std::string_view input)
{
    static const TemporaryFolder folder;
    static const std::string path = [] {
        std::filesystem::create_directory(folder.path("runs"));
        return folder.path("runs/some.run");
    }();
    TemporaryFolder::write(path, input);
    KeptRuns there(folder.path(), [](auto) { return "then"; });
    there.list();
    const auto first = load(path);
    if (!first || first->samples.isEmpty())
        return;
    require(there.list().size() == 1, "what has samples is listed");

    KeptRuns kept(folder.path("again"), [](auto) { return "then"; });
    kept.begin(first->design, first->samples, first->firstStart);
    kept.leave();
    const auto entries = kept.list();
    require(entries.size() == 1, "what is kept is listed");
    const auto again = load(entries.front().path);
    require(again && dumpOf(*again) == dumpOf(*first), "what is kept reads the same again");
    KeptRuns::remove(entries.front());
}

} // namespace zint
