#include "runner/keptRunFile.h"

#include "catalogue/designFile.h"
#include "catalogue/eventValue.h"
#include "samples/lineWriter.h"
#include "shared/textFile.h"

#include <array>
#include <charconv>
#include <sstream>
#include <string_view>

namespace zint {
namespace {

constexpr std::size_t longestSample =
    80; // three numbers of at most 11 digits, one of 24, and what is between them

constexpr std::int32_t latestMillisecond = 999;

using std::chrono::milliseconds;
using std::chrono::system_clock;

/// Takes a number and the comma behind it off a line. @return whether they were there
template <typename Number>
bool takeNumber(std::string_view& line, Number& number)
{
    const auto [stop, error] = std::from_chars(line.data(), line.data() + line.size(), number);
    line.remove_prefix(static_cast<std::size_t>(stop - line.data()));
    if (error != std::errc() || !line.starts_with(','))
        return false;
    line.remove_prefix(1);
    return true;
}

} // namespace

std::string headText(const Design& design, system_clock::time_point firstStart)
{
    std::ostringstream text;
    writeDesign(text, design);
    text << std::chrono::floor<milliseconds>(firstStart).time_since_epoch().count() << lineEnd;
    return text.str();
}

void appendSample(std::string& text, const KeptSample& sample)
{
    appendNumber(text, sample.event + 1) += ',';
    appendNumber(text, sample.time.seconds) += ',';
    appendNumber(text, sample.value) += ',';
    appendNumber(text, sample.time.milliseconds) += lineEnd;
}

KeptRunHead readHead(std::istream& stream)
{
    KeptRunHead head{.design = readDesign(stream)};
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
}

std::optional<KeptSample> nextSample(std::istream& stream, const Design& design)
{
    std::array<char, longestSample>
        buffer; // NOLINT(cppcoreguidelines-pro-type-member-init): getline fills it
    if (!stream.getline(buffer.data(), buffer.size()) || stream.eof())
        return std::nullopt; // too long, or without its end
    auto length = static_cast<std::size_t>(stream.gcount() - 1);
    if (length > 0 && buffer.at(length - 1) == '\r')
        --length;
    buffer.at(length) = ','; // as behind the other numbers
    std::string_view line(buffer.data(), length + 1);
    KeptSample sample;
    if (!takeNumber(line, sample.event) || !takeNumber(line, sample.time.seconds) ||
        !takeNumber(line, sample.value))
        return std::nullopt;
    sample.isExact = !line.empty();
    std::int32_t milliseconds = 0;
    if ((sample.isExact && !takeNumber(line, milliseconds)) || !line.empty() || milliseconds < 0 ||
        milliseconds > latestMillisecond)
        return std::nullopt;
    sample.time.milliseconds = static_cast<std::uint16_t>(milliseconds);
    if (sample.event < 1 || static_cast<std::size_t>(sample.event) > design.events.size())
        return std::nullopt;
    --sample.event;
    if (!isValueOf(design.events[static_cast<std::size_t>(sample.event)], sample.value))
        return std::nullopt;
    return sample;
}

} // namespace zint
