#include "runner/keptRuns.h"

#include "catalogue/designFile.h"
#include "runner/pollTexts.h"
#include "shared/module1.h"
#include "shared/textFile.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <filesystem>
#include <iterator>
#include <limits>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

namespace zint {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using std::chrono::system_clock;

constexpr std::size_t mostKept = 10;
constexpr std::size_t handOverSize = 65536;
constexpr std::size_t longestSample = 64; // three numbers of at most 20 digits, and what is between them
constexpr std::size_t readSize = 262144;
constexpr std::string_view leftMark = "left\r\n";
constexpr std::string_view toldMark = "told\r\n";

/// The event (from 0) of each record; a record tells its event only by the chain in which it hangs.
std::vector<std::uint8_t> eventsOf(const SampleStore& samples)
{
    static_assert(Design::maxEvents <= std::numeric_limits<std::uint8_t>::max());
    std::vector<std::uint8_t> events(samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const SampleRecord& record = samples[i];
        if (record.isHeader()) // the event's first sample is the next record
            events.at(i + 1) = events[i] = static_cast<std::uint8_t>(record.value - 1);
        else if (record.link != 0)
            events.at(static_cast<std::size_t>(record.link)) = events[i];
    }
    return events;
}

char* appendNumber(char* place, char* end, std::int64_t number, char separator)
{
    place = std::to_chars(place, end, number).ptr;
    *place++ = separator;
    return place;
}

/// Takes a number and the separator behind it off the line. @return whether they were there
bool takeNumber(std::string_view& line, std::int32_t& number, std::string_view separator)
{
    const auto [stop, error] = std::from_chars(line.data(), line.data() + line.size(), number);
    if (error != std::errc())
        return false;
    line.remove_prefix(static_cast<std::size_t>(stop - line.data()));
    if (!line.starts_with(separator))
        return false;
    line.remove_prefix(separator.size());
    return true;
}

/// Stores the sample of a line. @return whether it has one
bool takeLine(std::string_view line, SampleStore& samples)
{
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    std::int32_t event = 0;
    std::int32_t time = 0;
    std::int32_t value = 0;
    if (!takeNumber(line, event, ",") || !takeNumber(line, time, ",") || !takeNumber(line, value, "") ||
        !line.empty())
        return false;
    if (event < 1 || static_cast<std::size_t>(event) > samples.events().size())
        return false;
    samples.add(static_cast<std::size_t>(event) - 1, value, time);
    return true;
}

/// Reads up to the end or the first line that is not whole. @param size of the file in bytes, as it was
void readSamples(std::istream& stream, SampleStore& samples, std::uintmax_t size, Progress& progress)
{
    double done = 0; // bytes
    std::vector<char> block(readSize);
    std::size_t rest = 0; // the beginning of a line whose end is in the next block
    while (rest < block.size()) {
        stream.read(block.data() + rest, static_cast<std::streamsize>(block.size() - rest));
        if (stream.gcount() == 0)
            return;
        std::string_view text(block.data(), rest + static_cast<std::size_t>(stream.gcount()));
        for (auto end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
            if (!takeLine(text.substr(0, end), samples))
                return;
            text.remove_prefix(end + 1);
        }
        std::ranges::copy(text, block.begin());
        rest = text.size();
        done += static_cast<double>(stream.gcount());
        progress.advance(std::min(1.0, done / std::max(1.0, static_cast<double>(size))));
    }
}

/// What a look at the rest of a file tells; it would take long to look at each sample.
struct Extent {
    std::int64_t samples = 0;
    std::int32_t lastTime = 0; ///< seconds since the start
    bool isCutOff = false;
};

/// @param tail the end of the rest. @param lines of the rest
Extent extentOf(std::string_view tail, std::int64_t lines)
{
    Extent extent{.samples = lines, .isCutOff = !tail.ends_with(leftMark)};
    tail = tail.substr(0, tail.rfind('\n') + 1); // a line without its end does not count
    if (tail.ends_with(leftMark) || tail.ends_with(toldMark)) {
        tail.remove_suffix(leftMark.size());
        tail = tail.substr(0, tail.rfind('\n') + 1); // the mark may stand behind such a line
        --extent.samples;
    }
    tail.remove_suffix(std::min(tail.size(), lineEnd.size()));
    tail.remove_prefix(tail.rfind('\n') + 1);
    std::int32_t event = 0;
    if (takeNumber(tail, event, ","))
        takeNumber(tail, extent.lastTime, ",");
    return extent;
}

Extent readExtent(std::istream& stream)
{
    constexpr std::size_t tailSize = 3 * longestSample;
    std::string tail;
    std::vector<char> block(readSize);
    std::int64_t lines = 0;
    do {
        stream.read(block.data(), static_cast<std::streamsize>(block.size()));
        const std::string_view text(block.data(), static_cast<std::size_t>(stream.gcount()));
        lines += std::ranges::count(text, '\n');
        tail += text.substr(text.size() - std::min(text.size(), tailSize));
        tail.erase(0, tail.size() - std::min(tail.size(), tailSize));
    } while (stream);
    return extentOf(tail, lines);
}

struct Head {
    Design design;
    system_clock::time_point firstStart;
};

Head readHead(std::istream& stream, const std::string& path)
{
    try {
        Head head{.design = readDesign(stream)};
        LineReader lines(stream);
        const std::string line = lines.next().value_or("");
        std::int64_t start = 0;
        const char* const end = line.data() + line.size();
        const auto [stop, error] = std::from_chars(line.data(), end, start);
        constexpr auto latest = std::chrono::duration_cast<milliseconds>(system_clock::duration::max());
        const bool isTime = start >= -latest.count() && start <= latest.count();
        if (error != std::errc() || stop != end || !isTime || !lines.isEnded())
            throw FileError("the time of its start is missing");
        head.firstStart += milliseconds(start);
        return head;
    } catch (const std::runtime_error& error) {
        throw FileError("\"" + path + "\" can't be read: " + error.what());
    }
}

std::optional<std::string> summaryOf(const std::string& path,
                                     const std::function<std::string(system_clock::time_point)>& dateText)
{
    std::string text;
    try {
        readFile(path, [&](std::istream& stream) {
            const Head head = readHead(stream, path);
            if (const Extent extent = readExtent(stream); extent.samples > 0)
                text = dateText(head.firstStart) + "   " + head.design.title + " (" +
                       std::to_string(extent.samples) +
                       (extent.samples == 1 ? " sample in " : " samples in ") +
                       durationText(extent.lastTime) + (extent.isCutOff ? ", cut off)" : ")");
        });
    } catch (const std::exception&) { // a file that is damaged, or gone by now
        return std::nullopt;
    }
    return text.empty() ? std::nullopt : std::optional(text);
}

bool endsWith(const std::string& path, std::string_view mark)
{
    std::ifstream stream(utf8Path(path), std::ios::binary);
    std::string tail(mark.size(), '\0');
    stream.seekg(-static_cast<std::streamoff>(tail.size()), std::ios::end);
    stream.read(tail.data(), static_cast<std::streamsize>(tail.size()));
    return stream && tail == mark;
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

void removeFile(const std::string& path)
{
    std::error_code ignored;
    fs::remove(utf8Path(path), ignored);
}

} // namespace

KeptRuns::KeptRuns(std::string folder, std::function<std::string(system_clock::time_point)> dateText,
                   std::uintmax_t mostBytes)
    : files_(std::move(folder), ".run", mostKept, mostBytes), dateText_(std::move(dateText))
{
}

void KeptRuns::begin(const Design& design, const SampleStore& samples, system_clock::time_point firstStart)
{
    if (keeping_ && !samples.isEmpty())
        return;
    samples.isEmpty() ? leave() : forget(); // a file that failed: what it holds is in the store as well
    std::ostringstream head;
    writeDesign(head, design);
    head << std::chrono::floor<milliseconds>(firstStart).time_since_epoch().count() << lineEnd;
    const std::vector<std::uint8_t> events = eventsOf(samples);
    head_ = head.str();
    waiting_.resize(handOverSize + longestSample);
    path_ = files_.newPath();
    keeping_ = true;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (const SampleRecord& record = samples[i]; !record.isHeader())
            add(events[i], record.value, record.time);
    }
    flush();
}

void KeptRuns::add(std::size_t event, std::int32_t value, std::int32_t time)
{
    if (!keeping_)
        return;
    char* const end = waiting_.data() + waiting_.size();
    char* place = waiting_.data() + waitingSize_;
    place = appendNumber(place, end, static_cast<std::int64_t>(event) + 1, ',');
    place = appendNumber(place, end, time, ',');
    place = appendNumber(place, end, value, '\r');
    *place++ = '\n';
    waitingSize_ = static_cast<std::size_t>(place - waiting_.data());
    if (waitingSize_ >= handOverSize)
        handOver();
}

void KeptRuns::flush()
{
    if (keeping_ && waitingSize_ > 0)
        handOver();
    if (const int number = std::exchange(failure_, 0); number != 0)
        throw FileError("\"" + path_ + "\" can't be written: " + std::generic_category().message(number));
}

/// Writes what waits. When that fails, nothing more is kept and `failure_` says why.
void KeptRuns::handOver()
{
    try {
        errno = 0;
        if (!stream_.is_open()) {
            lock_.take(path_);                      // nobody else knows the name
            stream_.rdbuf()->pubsetbuf(nullptr, 0); // else close() would write again what failed in part
            stream_.open(utf8Path(path_), std::ios::binary | std::ios::app);
            stream_ << head_;
        }
        stream_.write(waiting_.data(), static_cast<std::streamsize>(waitingSize_));
        if (!stream_)
            failure_ = errno != 0 ? errno : EIO;
    } catch (const std::exception&) {
        failure_ = ENOMEM; // the path's copy is all that can fail
    }
    waitingSize_ = 0;
    if (failure_ != 0) {
        stream_.close();
        keeping_ = false;
    }
}

/// From now on there is no present run. Its file stays as it is.
void KeptRuns::close()
{
    stream_.close();
    lock_.release();
    keeping_ = false;
    path_.clear();
    waitingSize_ = 0;
    failure_ = 0;
}

void KeptRuns::forget()
{
    const std::string path = path_;
    close();
    if (!path.empty())
        removeFile(path);
}

void KeptRuns::leave()
{
    if (keeping_ && waitingSize_ > 0)
        handOver();
    stream_.close();
    if (!path_.empty())
        putMark(path_, leftMark);
    close();
    prune();
}

/// A run that was cut off lasts longer than those that were left, which may be many in a day. Half of the
/// places are enough, so that those that were left last a while, too.
void KeptRuns::prune() const
{
    files_.prune([places = mostKept / 2](const KeptFiles::File& file) mutable {
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
    KeptRun run;
    readFile(entry.path, [&](std::istream& stream) {
        const Head head = readHead(stream, entry.path);
        run.design = head.design;
        run.firstStart = head.firstStart;
        run.samples.reset(run.design);
        readSamples(stream, run.samples, entry.size, progress);
    });
    return run;
}

void KeptRuns::remove(const KeptEntry& entry) { removeFile(entry.path); }

} // namespace zint
