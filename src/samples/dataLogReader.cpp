#include "samples/dataLogReader.h"

#include "catalogue/designFile.h"
#include "catalogue/eventValue.h"
#include "samples/lineWriter.h"
#include "shared/fileError.h"
#include "shared/module1.h"
#include "shared/textFile.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zint {
namespace {

struct Sample {
    SampleTime time;
    double value;
};

/// The samples of an event that wait for their places in the run.
struct Waiting {
    std::size_t event;     ///< from 0
    std::int64_t loop = 0; ///< in which the event is requested next
    std::vector<Sample> samples;
    std::size_t taken = 0;

    const Sample& first() const { return samples[taken]; }
    std::int32_t time() const { return first().time.seconds; }

    /// A log keeps whole seconds: spreads the samples of each second evenly over it.
    void spread();
};

void Waiting::spread()
{
    for (auto begin = samples.begin(); begin != samples.end();) {
        const auto end = std::find_if(begin, samples.end(),
                                      [&](const Sample& s) { return s.time.seconds != begin->time.seconds; });
        const auto count = static_cast<std::size_t>(end - begin);
        for (std::size_t i = 0; begin != end; ++begin, ++i)
            begin->time = timeWithin(begin->time.seconds, i, count);
    }
}

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

/// A value as appendNumber() writes it.
std::optional<double> toValue(std::string_view text)
{
    if (const auto whole = toNumber<std::int64_t>(text))
        return static_cast<double>(*whole);
    double number = 0;
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    std::string again;
    if (result.ec != std::errc() || !std::isfinite(number) || appendNumber(again, number) != text)
        return std::nullopt;
    return number;
}

Sample toSample(std::string_view line, const DesignEntry& event)
{
    const auto comma = std::min(line.find(','), line.size());
    const auto time = toNumber<std::int32_t>(line.substr(0, comma));
    const auto value = toValue(line.substr(std::min(comma + 1, line.size())));
    if (!time || !value || !isValueOf(event, *value))
        throw FileError("this is no sample");
    return {{*time}, *value};
}

class LogReader {
public:
    LogReader(std::istream& stream, Progress& progress) : lines_(stream), progress_(progress) {}

    DataLog read()
    {
        try {
            DataLog log{.design = readLoggedDesign(lines_), .firstStart = startLine()};
            const std::size_t count = recordCount();
            ProgressSteps steps(progress_, 2 * count); // each record is read, and put in its place
            log.samples = inOrderOfRequests(log.design, waiting(log.design, count, steps), steps);
            return log;
        } catch (const WorkStopped&) {
            throw;
        } catch (const std::runtime_error& error) { // also of a number in the design that is none
            throw FileError("This is no whole data log, line " + std::to_string(lines_.number()) + ": " +
                            error.what());
        }
    }

private:
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
        if (!count || *count > SampleStore::mostRecords)
            throw FileError("this is no number of records");
        return *count;
    }

    std::vector<Waiting> waiting(const Design& design, std::size_t count, ProgressSteps& steps)
    {
        std::size_t records = 0;
        std::vector<Waiting> all;
        while (const auto line = nextLine()) {
            if (line->starts_with("##"))
                all.push_back(newBlock(design, all, line->substr(2)));
            else if (all.empty())
                throw FileError("this sample belongs to no event");
            else
                all.back().samples.push_back(toSample(*line, design.events[all.back().event]));
            if (++records > count)
                throw FileError("there are more records than the " + std::to_string(count) + " announced");
            steps.step();
        }
        if (records < count || isLastEmpty(all))
            throw FileError("the file ends after " + std::to_string(records) + " of " +
                            std::to_string(count) + " records");
        for (Waiting& event : all)
            event.spread();
        return all;
    }

    static bool isLastEmpty(const std::vector<Waiting>& all)
    {
        return !all.empty() && all.back().samples.empty();
    }

    static Waiting newBlock(const Design& design, const std::vector<Waiting>& before, std::string_view number)
    {
        if (isLastEmpty(before))
            throw FileError("the block before has no samples");
        const auto event = toNumber<std::size_t>(number);
        const std::size_t last = before.empty() ? 0 : before.back().event + 1;
        if (!event || *event <= last || *event > design.events.size())
            throw FileError("this is no event of the design that comes next");
        return {.event = *event - 1};
    }

    /// The samples as a run brings them: loop by loop, and of each loop the events that are due. A bad reply
    /// left a gap that only the times tell of; a run that was stopped and started again began its loop anew.
    /// The order found there is the likely one.
    static SampleStore inOrderOfRequests(const Design& design, std::vector<Waiting> waiting,
                                         ProgressSteps& steps)
    {
        SampleStore store;
        store.reset(design);
        const auto dueFrom = [&design](const Waiting& event, std::int64_t loop) {
            return nextLoop(design.events[event.event], loop);
        };
        for (Waiting& event : waiting)
            event.loop = event.event == 0 ? 0 : dueFrom(event, 0); // each run begins with the first event
        std::int32_t latest = 0;
        while (!waiting.empty()) {
            const auto earliest = std::ranges::min_element(waiting, {}, &Waiting::time);
            auto next = std::ranges::min_element(waiting, {}, &Waiting::loop);
            if (next->time() > std::max(earliest->time(), latest)) {
                if (earliest->loop != noLoop) { // its replies were bad while the earliest sample had not come
                    next->loop = dueFrom(*next, std::max(next->loop + 1, earliest->loop));
                    continue;
                }
                next = earliest;
            }
            latest = std::max(latest, next->time());
            store.addSaved(next->event, next->first().value, next->first().time);
            steps.step();
            if (next->loop != noLoop)
                next->loop = dueFrom(*next, next->loop + 1);
            if (++next->taken == next->samples.size())
                waiting.erase(next);
        }
        return store;
    }

    LineReader lines_;
    Progress& progress_;
};

} // namespace

DataLog readLog(std::istream& stream, Progress& progress) { return LogReader(stream, progress).read(); }

DataLog loadLog(const std::string& path, Progress& progress)
{
    DataLog log;
    readFile(path, [&](std::istream& stream) {
        try {
            log = readLog(stream, progress);
        } catch (const FileError& error) {
            throw FileError("\"" + path + "\": " + error.what());
        }
    });
    return log;
}

} // namespace zint
