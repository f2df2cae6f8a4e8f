#include "link/wireRecord.h"

#include "link/replyBuffer.h"
#include "link/transcriptText.h"
#include "shared/module1.h"
#include "shared/programInfo.h"
#include "shared/systemFiles.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <utility>

namespace zint {
namespace {

using namespace std::chrono_literals;

constexpr int blocksInMemory = 16;
constexpr std::size_t longestPending = 1 << 16;
constexpr Clock::Time longestUnflushed = 100ms;
constexpr Clock::Time fastExchange = 20ms;  ///< the next command comes at once, and writes the reply
constexpr Clock::Time stampInterval = 20ms; ///< of stamps within a reply

void appendNumber(std::string& text, std::int64_t number, std::size_t digits)
{
    std::array<char, 24> room{};
    const char* const end = std::to_chars(room.data(), room.data() + room.size(), number).ptr;
    const auto length = static_cast<std::size_t>(end - room.data());
    text.append(digits > length ? digits - length : 0, '0');
    text.append(room.data(), length);
}

/// "2026-05-01 13:02:05 UTC".
std::string dateText(std::chrono::system_clock::time_point time)
{
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(std::chrono::floor<std::chrono::seconds>(time - day));
    std::string text;
    appendNumber(text, static_cast<int>(date.year()), 4);
    for (const auto& [mark, number] :
         {std::pair('-', static_cast<std::int64_t>(static_cast<unsigned>(date.month()))),
          std::pair('-', static_cast<std::int64_t>(static_cast<unsigned>(date.day()))),
          std::pair(' ', static_cast<std::int64_t>(clock.hours().count())),
          std::pair(':', static_cast<std::int64_t>(clock.minutes().count())),
          std::pair(':', static_cast<std::int64_t>(clock.seconds().count()))}) {
        text += mark;
        appendNumber(text, number, 2);
    }
    return text + " UTC";
}

std::string writeFailure(const std::string& path, int error)
{
    return "\"" + path + "\" can't be written: " + failureReason(utf8Path(path), error);
}

} // namespace

WireRecord::WireRecord(const Clock& clock, MakeMask makeMask, Limits limits)
    : clock_(clock), makeMask_(std::move(makeMask)), limits_(limits)
{
}

std::string WireRecord::programText() const
{
    return programInfo().productName + " " + programInfo().version() + ", " + dateText(clock_.wall());
}

std::string WireRecord::timeText() const
{
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(clock_.monotonic() - openedAt_);
    std::string text;
    appendNumber(text, time.count() / 1000, 1);
    text += '.';
    appendNumber(text, time.count() % 1000, 3);
    return text + " s";
}

void WireRecord::opened(const std::string& where)
{
    openedAt_ = clock_.monotonic();
    lastFailure_.clear();
    stampedAt_.reset();
    std::string head;
    writeComment(head, programText());
    writeComment(head, "opened " + where);
    if (std::exchange(isLost_, false)) {
        take(head);
        return;
    }
    flush(); // of the exchange before
    blocks_.clear();
    remembered_ = 0;
    isCut_ = false;
    head_ = head;
    pending_ += path_.empty() ? "" : head;
}

/// The exchange before may be the one that tells why.
void WireRecord::notOpened(const std::string& why)
{
    std::string line;
    writeComment(line, programText() + ": not opened: " + why);
    if (why == lastFailure_) // whoever waits for an adapter tries again and again
        return;
    lastFailure_ = why;
    if (head_.empty())
        head_ = line;
    else
        remember(line);
    pending_ += path_.empty() ? "" : line;
    flush();
}

void WireRecord::written(std::string_view bytes)
{
    flush(); // the exchange before is whole, and the adapter is busy
    beginLines(Stamp::written);
    stampedAt_.reset();
    writeSent(lines_, bytes);
    take(lines_);
}

void WireRecord::received(std::string_view bytes)
{
    const bool isStamped = stampedAt_ && clock_.monotonic() - *stampedAt_ < stampInterval;
    beginLines(isStamped ? Stamp::none : Stamp::written);
    writeReceived(lines_, bytes);
    take(lines_);
    if (path_.empty())
        return;
    const auto patience = bytes.ends_with(ReplyBuffer::prompt) ? fastExchange : longestUnflushed;
    if (clock_.monotonic() - flushedAt_ >= patience)
        flush();
}

void WireRecord::lost()
{
    isLost_ = true;
    beginLines(Stamp::written);
    writeComment(lines_, "lost");
    take(lines_);
    flush();
}

void WireRecord::closed()
{
    beginLines(Stamp::written);
    writeComment(lines_, "closed");
    take(lines_);
    flush();
}

void WireRecord::beginLines(Stamp stamp)
{
    lines_.clear();
    if (stamp == Stamp::none)
        return;
    stampedAt_ = clock_.monotonic();
    writeComment(lines_, timeText());
}

void WireRecord::take(std::string_view lines)
{
    remember(lines);
    if (path_.empty())
        return;
    pending_ += lines;
    if (pending_.size() > longestPending)
        flush();
}

/// Lines are dropped by the block, so that a line costs no more than its characters.
void WireRecord::remember(std::string_view lines)
{
    if (blocks_.empty() || blocks_.back().size() + lines.size() > limits_.memory / blocksInMemory)
        blocks_.emplace_back();
    blocks_.back() += lines;
    remembered_ += lines.size();
    if (remembered_ > limits_.memory)
        dropOldest();
}

void WireRecord::dropOldest()
{
    while (remembered_ > limits_.memory && blocks_.size() > 1) {
        remembered_ -= blocks_.front().size();
        blocks_.pop_front();
        isCut_ = true;
    }
}

std::string WireRecord::lastExchange(Identity identity) const
{
    std::string text = head_;
    if (isCut_)
        writeComment(text, "the exchange was long: its beginning is left out");
    for (const std::string& block : blocks_)
        text += block;
    return identity == Identity::leftOut ? makeMask_()(text) : text;
}

void WireRecord::start(const std::string& path, Identity identity)
{
    stop();
    errno = 0;
    file_.clear();
    file_.open(utf8Path(path), std::ios::binary | std::ios::trunc);
    std::string head;
    writeComment(head, "a transcript, begun on " + dateText(clock_.wall()));
    head += head_;
    if (!file_.write(head.data(), static_cast<std::streamsize>(head.size())).flush()) {
        const int error = errno;
        file_.close();
        throw FileError(writeFailure(path, error));
    }
    path_ = path;
    mask_ = identity == Identity::leftOut ? makeMask_() : Mask();
    if (mask_)
        mask_(lastExchange(Identity::kept)); // a reply may be on its way
    fileSize_ = head.size();
    flushedAt_ = clock_.monotonic();
}

void WireRecord::stop()
{
    if (path_.empty())
        return;
    flush();
    path_.clear();
    file_.close();
}

/// What has come goes to the system at once, so that it is kept when the program ends in whatever way.
void WireRecord::flush()
{
    const std::string lines = std::exchange(pending_, {});
    if (path_.empty() || lines.empty())
        return;
    const std::string text = mask_ ? mask_(lines) : lines;
    errno = 0;
    flushedAt_ = clock_.monotonic();
    fileSize_ += text.size();
    const bool isFull = fileSize_ > limits_.file;
    std::string last;
    if (isFull)
        writeComment(last, "the recording ends here: the file is large");
    file_ << text << last;
    if (!file_.flush())
        end(writeFailure(path_, errno));
    else if (isFull)
        end("\"" + path_ + "\" is large by now");
}

void WireRecord::end(const std::string& why)
{
    path_.clear();
    file_.close();
    if (onEnded)
        onEnded(why + ". The recording has ended.");
}

} // namespace zint
