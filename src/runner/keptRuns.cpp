#include "runner/keptRuns.h"

#include "runner/keptRunFile.h"
#include "runner/runDisplay.h"
#include "shared/module1.h"
#include "shared/systemFiles.h"
#include "shared/textFile.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

namespace zint {
namespace {

namespace fs = std::filesystem;
using std::chrono::system_clock;

constexpr std::size_t flushSize = 65536;
constexpr std::string_view leftMark = "left\r\n";
constexpr std::string_view toldMark = "told\r\n";

bool endsWith(const std::string& path, std::string_view mark)
{
    std::ifstream stream(utf8Path(path), std::ios::binary);
    std::string tail(mark.size(), '\0');
    stream.seekg(-static_cast<std::streamoff>(tail.size()), std::ios::end);
    stream.read(tail.data(), static_cast<std::streamsize>(tail.size()));
    return stream && tail == mark;
}

std::optional<std::string> summaryOf(const std::string& path, const DateText& dateText)
{
    std::string text;
    try {
        readFile(path, [&](std::istream& stream) {
            const KeptRunHead head = readHead(stream);
            std::int64_t samples = 0;
            std::int32_t lastTime = 0;
            for (; const auto sample = nextSample(stream, head.design); ++samples)
                lastTime = sample->time.seconds;
            if (samples > 0)
                text = dateText(head.firstStart) + "   " + head.design.title + " (" +
                       samplesText(samples, lastTime) + (endsWith(path, leftMark) ? ")" : ", cut off)");
        });
    } catch (const std::exception&) { // a file that is damaged, or gone by now
        return std::nullopt;
    }
    return text.empty() ? std::nullopt : std::optional(text);
}

/// Puts a mark at a file's end. Its time stays that of its last sample. @return whether it could be done
bool putMark(const std::string& path, std::string_view mark)
{
    const fs::path file = utf8Path(path);
    std::error_code error;
    const auto changed = fs::last_write_time(file, error);
    if (error)
        return false;
    std::ofstream stream(file, std::ios::binary | std::ios::app);
    stream << mark;
    stream.close();
    fs::last_write_time(file, changed, error);
    return !stream.fail();
}

/// Adds the samples of a second. Those of earlier versions are spread over it.
void addSecond(SampleStore& samples, std::vector<KeptSample>& second)
{
    for (std::size_t i = 0; i < second.size(); ++i) {
        const KeptSample& sample = second[i];
        samples.addSaved(static_cast<std::size_t>(sample.event), sample.value,
                         sample.isExact ? sample.time : timeWithin(sample.time.seconds, i, second.size()));
    }
    second.clear();
}

void removeFile(const std::string& path)
{
    std::error_code ignored;
    fs::remove(utf8Path(path), ignored);
}

} // namespace

KeptRuns::KeptRuns(const std::string& userDataFolder, DateText dateText, std::uintmax_t mostBytes)
    : files_(userDataFolder, keptKinds::runs, mostBytes), dateText_(std::move(dateText))
{
}

void KeptRuns::begin(const Design& design, const SampleStore& samples, system_clock::time_point firstStart)
{
    if (keeping_ && !samples.isEmpty())
        return;
    samples.isEmpty() ? leave() : forget(); // a file that failed: what it holds is in the store as well
    failure_.clear();
    try {
        path_ = files_.newPath();
    } catch (const FileError& error) {
        failure_ = error.what();
        return;
    }
    head_ = headText(design, firstStart);
    keeping_ = true;
    const bool wasSaved = isSaved_;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (const SampleRecord& record = samples[i]; !record.isHeader())
            add(record.event, record.value, {record.time, record.milliseconds});
    }
    isSaved_ = wasSaved; // these samples are not new
    flush();
}

void KeptRuns::add(std::size_t event, double value, SampleTime time)
{
    isSaved_ = false;
    if (!keeping_)
        return;
    appendSample(waiting_, {.event = static_cast<std::int32_t>(event), .time = time, .value = value});
    if (waiting_.size() >= flushSize)
        flush();
}

void KeptRuns::flush()
{
    if (waiting_.empty())
        return;
    errno = 0;
    if (!stream_.is_open()) {
        lock_.take(path_);                      // nobody else knows the name
        stream_.rdbuf()->pubsetbuf(nullptr, 0); // else close() would write again what failed in part
        stream_.open(utf8Path(path_), std::ios::binary | std::ios::app);
        stream_ << head_;
    }
    stream_.write(waiting_.data(), static_cast<std::streamsize>(waiting_.size()));
    waiting_.clear();
    if (stream_)
        return;
    failure_ = "\"" + path_ + "\" can't be written: " + failureReason(utf8Path(path_), errno);
    stream_.close();
    keeping_ = false;
}

/// From now on there is no present run. Its file stays as it is.
void KeptRuns::close()
{
    stream_.close();
    lock_.release();
    keeping_ = false;
    path_.clear();
    waiting_.clear();
}

void KeptRuns::forget()
{
    const std::string path = path_;
    close();
    if (!path.empty())
        removeFile(path);
}

void KeptRuns::pause()
{
    flush();
    if (isSaved_)
        forget();
}

void KeptRuns::leave()
{
    pause();
    stream_.close();
    if (!path_.empty())
        putMark(path_, leftMark);
    close();
    isSaved_ = false;
    failure_.clear();
    prune();
}

/// A run that was cut off lasts longer than those that were left, which may be many in a day. Half of the
/// places are enough, so that those that were left last a while, too.
void KeptRuns::prune() const
{
    files_.prune([places = keptKinds::runs.most / 2](const KeptFiles::File& file) mutable {
        return places > 0 && !endsWith(file.path, leftMark) && places-- > 0;
    });
}

bool KeptRuns::takeCutOff()
{
    bool found = false;
    try {
        prune();
        for (const KeptFiles::File& file : files_.newestFirst()) {
            const bool isNews = file.path != path_ && !endsWith(file.path, leftMark) &&
                                !endsWith(file.path, toldMark) && putMark(file.path, toldMark);
            found = (isNews && summaryOf(file.path, dateText_)) || found;
        }
    } catch (const std::exception&) {
        return found;
    }
    return found;
}

std::vector<KeptEntry> KeptRuns::list(Progress& progress) const
{
    std::vector<KeptEntry> entries;
    const std::vector<KeptFiles::File> files = files_.newestFirst();
    for (std::size_t i = 0; i < files.size(); ++i) {
        progress.advance(static_cast<double>(i) / static_cast<double>(files.size()));
        if (files[i].path == path_)
            continue;
        if (const auto text = summaryOf(files[i].path, dateText_))
            entries.push_back({files[i].path, *text, files[i].size});
    }
    return entries;
}

KeptRun KeptRuns::load(const KeptEntry& entry, Progress& progress)
{
    constexpr std::size_t samplesBetweenReports = 16384;
    KeptRun run;
    readFile(entry.path, [&](std::istream& stream) {
        try {
            KeptRunHead head = readHead(stream);
            run.design = std::move(head.design);
            run.firstStart = head.firstStart;
        } catch (const std::runtime_error& error) {
            throw FileError("\"" + entry.path + "\" can't be read: " + error.what());
        }
        run.samples.reset(run.design);
        std::vector<KeptSample> second;
        for (std::size_t count = 1; const auto sample = nextSample(stream, run.design); ++count) {
            if (!second.empty() && second.front().time.seconds != sample->time.seconds)
                addSecond(run.samples, second);
            second.push_back(*sample);
            if (count % samplesBetweenReports == 0)
                progress.advance(
                    std::min(1.0, static_cast<double>(stream.tellg()) /
                                      static_cast<double>(std::max<std::uintmax_t>(entry.size, 1))));
        }
        addSecond(run.samples, second);
    });
    return run;
}

void KeptRuns::remove(const KeptEntry& entry) { removeFile(entry.path); }

} // namespace zint
