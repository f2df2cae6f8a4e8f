#include "catalogue/designFile.h"
#include "runner/dataLog.h"
#include "runner/schedule.h"
#include "shared/fileError.h"
#include "shared/runTimeError.h"
#include "shared/textFile.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zint {
namespace {

struct Sample {
    std::int32_t time;
    std::int32_t value;
};

/// Samples of one event. What was taken is given back to the system piece by piece, so that these and the
/// store that they go to never stand in memory whole together.
class SampleQueue {
public:
    bool isEmpty() const { return pieces_.empty(); }
    const Sample& front() const { return pieces_.front()[taken_]; }

    void add(const Sample& sample)
    {
        if (pieces_.empty() || pieces_.back().size() == pieceSize)
            pieces_.emplace_back().reserve(pieceSize);
        pieces_.back().push_back(sample);
    }

    void pop()
    {
        if (++taken_ < pieces_.front().size())
            return;
        pieces_.pop_front();
        taken_ = 0;
    }

private:
    static constexpr std::size_t pieceSize = 16384; // 128 KB: enough to be memory of its own

    std::deque<std::vector<Sample>> pieces_;
    std::size_t taken_ = 0; // of the first piece
};

/// The samples of an event that wait for their places in the run.
struct Waiting {
    std::size_t event; ///< from 0
    std::int64_t loop; ///< in which the event is requested next
    SampleQueue samples;
    std::int32_t time = 0; ///< of the first of them
};

/// Only what this program writes: no blanks, no sign but the minus, no zeros in front.
template <typename Number>
std::optional<Number> toNumber(std::string_view text)
{
    Number number = 0;
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    const std::string_view digits = text.starts_with('-') ? text.substr(1) : text;
    if (result.ec != std::errc() || result.ptr != end || (digits.front() == '0' && text != "0"))
        return std::nullopt;
    return number;
}

std::string_view trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

Sample toSample(std::string_view line)
{
    const auto comma = std::min(line.find(','), line.size());
    const auto time = toNumber<std::int32_t>(line.substr(0, comma));
    const auto value = toNumber<std::int32_t>(line.substr(std::min(comma + 1, line.size())));
    if (!time || !value)
        throw FileError("this is no sample");
    return {*time, *value};
}

class LogReader {
public:
    explicit LogReader(std::istream& stream) : lines_(stream) {}

    DataLog read()
    {
        try {
            DataLog log{.design = readLoggedDesign(lines_), .firstStart = startLine()};
            log.samples = inOrderOfRequests(log.design, waiting(log.design));
            return log;
        } catch (const FileError& error) {
            fail(error);
        } catch (const RunTimeError& error) {
            fail(error);
        }
    }

private:
    [[noreturn]] void fail(const std::exception& error) const
    {
        throw FileError("This is no whole data log, line " + std::to_string(lines_.number()) + ": " +
                        error.what());
    }

    /// Nothing at the end of the file. A line without its end is one that was cut off.
    std::optional<std::string> nextLine()
    {
        auto line = lines_.next();
        if (line && !lines_.isEnded())
            throw FileError("the file ends within the line");
        return line;
    }

    std::string startLine()
    {
        const auto line = nextLine();
        if (!line)
            throw FileError("the file ends before the start of polling");
        if (line->size() > LineReader::longestLine)
            throw FileError("this is no date");
        return *line;
    }

    std::size_t recordCount()
    {
        const auto line = nextLine();
        const auto count = toNumber<std::size_t>(trimmed(line.value_or("")));
        if (!count)
            throw FileError("this is no number of records");
        return *count;
    }

    std::vector<Waiting> waiting(const Design& design)
    {
        const std::size_t count = recordCount();
        std::size_t records = 0;
        std::vector<Waiting> all;
        all.reserve(design.events().size());
        bool isBlockEmpty = false;
        while (const auto line = nextLine()) {
            if (line->starts_with("##")) {
                if (isBlockEmpty)
                    throw FileError("the block before has no samples");
                isBlockEmpty = true;
                all.push_back(newBlock(design, all, line->substr(2)));
            } else {
                if (all.empty())
                    throw FileError("this sample belongs to no event");
                all.back().samples.add(toSample(*line));
                isBlockEmpty = false;
            }
            if (++records > count)
                throw FileError("there are more records than the " + std::to_string(count) + " announced");
        }
        if (records < count || isBlockEmpty)
            throw FileError("the file ends after " + std::to_string(records) + " of " +
                            std::to_string(count) + " records");
        return all;
    }

    static Waiting newBlock(const Design& design, const std::vector<Waiting>& before, std::string_view number)
    {
        const auto event = toNumber<std::size_t>(number);
        const std::size_t last = before.empty() ? 0 : before.back().event + 1;
        if (!event || *event <= last || *event > design.events().size())
            throw FileError("this is no event of the design that comes next");
        return {.event = *event - 1, .loop = 0, .samples = {}};
    }

    /// The samples as a run brings them: pass by pass, of each pass the events that are due. Bad replies left
    /// gaps that only the times tell of, and runs that were stopped and started again began the pass anew;
    /// there the order is the likely one.
    static SampleStore inOrderOfRequests(const Design& design, std::vector<Waiting> waiting)
    {
        SampleStore store;
        store.reset(design);
        const auto entry = [&design](const Waiting& event) -> const DesignEntry& {
            return design.events()[event.event];
        };
        for (Waiting& event : waiting) {
            event.loop =
                event.event == 0 ? 0 : nextLoop(entry(event), 0); // each run begins with the first event
            event.time = event.samples.front().time;
        }
        std::int32_t latest = 0;
        while (!waiting.empty()) {
            const auto earliest = std::ranges::min_element(waiting, {}, &Waiting::time);
            auto next = std::ranges::min_element(waiting, {}, &Waiting::loop);
            if (next->time > std::max(earliest->time, latest)) {
                if (earliest->loop != noLoop) { // its replies were bad while the earliest sample had not come
                    next->loop = nextLoop(entry(*next), std::max(next->loop + 1, earliest->loop));
                    continue;
                }
                next = earliest;
            }
            const Sample sample = next->samples.front();
            latest = std::max(latest, sample.time);
            store.add(next->event, sample.value, sample.time);
            next->samples.pop();
            if (next->loop != noLoop)
                next->loop = nextLoop(entry(*next), next->loop + 1);
            if (next->samples.isEmpty())
                waiting.erase(next);
            else
                next->time = next->samples.front().time;
        }
        return store;
    }

    LineReader lines_;
};

} // namespace

DataLog readLog(std::istream& stream) { return LogReader(stream).read(); }

} // namespace zint
