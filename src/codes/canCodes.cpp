#include "codes/canCodes.h"

#include "codes/replyText.h"
#include "codes/troubleCodes.h"
#include "link/replyBuffer.h"
#include "shared/module1.h"
#include "vehicle/troubleCode.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zint {
namespace {

constexpr std::size_t headLength = 2;       // 43 and the number of codes
constexpr std::size_t firstFrameLength = 6; // that of the numbered frames
constexpr std::size_t frameLength = 7;      // the longest; also of a line of the older buses

struct Line {
    std::optional<int> frame; ///< nothing: the line is a whole answer
    Bytes bytes;

    bool beginsAnswer() const
    {
        return frame.value_or(0) == 0 && bytes.size() >= headLength && bytes[0] == 0x43;
    }
};

std::vector<Line> readLines(std::string_view reply)
{
    std::vector<Line> lines;
    for (const std::string_view text : replyLines(reply)) {
        const bool isNumbered = text.size() > 1 && text[1] == ':';
        Line line{.frame = {}, .bytes = bytesOf(text.substr(isNumbered ? 2 : 0))};
        if (isNumbered)
            line.frame = upperHexDigit(text[0]);
        if (line.frame || line.beginsAnswer())
            lines.push_back(std::move(line));
    }
    return lines;
}

std::size_t answerLength(const Bytes& answer) { return headLength + 2 * std::size_t{answer[1]}; }

/// A control unit's answer as far as it has been put together.
class Answer {
public:
    explicit Answer(const Line& line) : bytes_(line.bytes)
    {
        if (line.frame && line.bytes.size() == firstFrameLength)
            nextFrame_ = 1;
    }

    bool expects(const Line& line) const
    {
        return nextFrame_ && line.frame == *nextFrame_ % 16 && bytes_.size() < answerLength(bytes_);
    }

    void add(const Bytes& bytes)
    {
        bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
        ++*nextFrame_;
        if (bytes.size() != frameLength)
            end();
    }

    /// Takes no more frames.
    void end() { nextFrame_.reset(); }

    CanUnit unit() const
    {
        CanUnit unit;
        const std::size_t end = std::min(bytes_.size(), answerLength(bytes_));
        for (std::size_t i = headLength; i + 1 < end; i += 2)
            unit.codes.push_back(troubleCode(bytes_[i], bytes_[i + 1]));
        unit.unreadCodes = bytes_[1] - unit.codes.size();
        std::erase(unit.codes, noTroubleCode);
        return unit;
    }

private:
    Bytes bytes_;
    std::optional<int> nextFrame_;
};

/// Puts frames together by their numbers. Where the frames of several control units are mixed so that one
/// could belong to two of them, what follows is left out: a code of two halves would be nobody's.
std::vector<Answer> joined(const std::vector<Line>& lines)
{
    std::vector<Answer> answers;
    for (const Line& line : lines) {
        const auto expects = [&line](const Answer& answer) { return answer.expects(line); };
        const auto taker = std::ranges::find_if(answers, expects);
        if (taker == answers.end() && line.beginsAnswer())
            answers.emplace_back(line);
        else if (std::ranges::count_if(answers, expects) == 1)
            taker->add(line.bytes);
        else
            std::ranges::for_each(answers, &Answer::end);
    }
    return answers;
}

/// Whether the adapter shows the padding of CAN: the answer to "0101" has six bytes on every bus.
bool isPadded(std::string_view statusReply)
{
    const auto lines = replyLines(statusReply);
    return !lines.empty() && bytesOf(lines.front()).size() == frameLength;
}

/// Whether a single line of seven bytes is a padded answer, going by the number of codes that the vehicle
/// reported: it stands in front of the codes, bytes that are usual as padding stand behind them, and as three
/// codes of an older bus the line would have another number of them.
bool fitsCanAlone(const Bytes& line, int reportedCodes)
{
    constexpr std::array<std::uint8_t, 5> paddings = {0x00, 0x55, 0xAA, 0xCC, 0xFF};
    int olderCodes = 0;
    for (std::size_t i = 1; i + 1 < line.size(); i += 2)
        olderCodes += line[i] != 0 || line[i + 1] != 0 ? 1 : 0;
    const std::uint8_t last = line.back();
    const auto padding = line.begin() + static_cast<std::ptrdiff_t>(answerLength(line));
    return line[1] == reportedCodes && olderCodes != reportedCodes &&
           std::ranges::find(paddings, last) != paddings.end() &&
           std::count(padding, line.end(), last) == line.end() - padding;
}

bool isCanLayout(const std::vector<Line>& lines, std::string_view statusReply)
{
    if (std::ranges::any_of(lines, [](const Line& line) { return line.frame && line.beginsAnswer(); }))
        return true;
    std::vector<Bytes> answers;
    for (const Line& line : lines) {
        if (!line.frame)
            answers.push_back(line.bytes);
    }
    const auto isFull = [](const Bytes& answer) { return answer.size() == frameLength; };
    if (std::ranges::none_of(answers, isFull))
        return std::ranges::any_of(answers, [](const Bytes& a) { return a.size() == answerLength(a); });
    const auto canHoldIts = [&](const Bytes& answer) {
        return isFull(answer) && answerLength(answer) <= frameLength;
    };
    if (!std::ranges::all_of(answers, canHoldIts))
        return false;
    const auto statuses = unitStatuses(statusReply);
    return isPadded(statusReply) || (answers.size() == 1 && !statuses.empty() &&
                                     fitsCanAlone(answers.front(), statuses.front().codes));
}

} // namespace

std::optional<std::vector<CanUnit>> canCodes(std::string_view codesReply, std::string_view statusReply)
{
    const std::vector<Line> lines = readLines(codesReply);
    if (!isCanLayout(lines, statusReply))
        return std::nullopt;
    std::vector<CanUnit> units;
    for (const Answer& answer : joined(lines))
        units.push_back(answer.unit());
    return units;
}

} // namespace zint
