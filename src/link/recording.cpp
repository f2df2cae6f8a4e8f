#include "link/recording.h"

#include "link/replyBuffer.h"
#include "link/transcriptText.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

namespace zint {
namespace {

using std::chrono::milliseconds;

constexpr char commandEnd = '\r';
constexpr milliseconds longestWait = std::chrono::hours(1);

/// The number that a text begins with, which is taken away.
std::optional<int> takeNumber(std::string_view& text)
{
    int number = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (fault != std::errc() || number < 0)
        return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

/// The time that a comment such as " 12.345 s" tells.
std::optional<milliseconds> timeIn(std::string_view comment)
{
    constexpr std::size_t decimals = 3;
    comment.remove_prefix(std::min(comment.find_first_not_of(' '), comment.size()));
    const auto seconds = takeNumber(comment);
    if (!seconds || !comment.starts_with('.'))
        return std::nullopt;
    comment.remove_prefix(1);
    const std::size_t digits = comment.find_first_not_of("0123456789");
    const auto thousandths = takeNumber(comment);
    if (!thousandths || digits != decimals || comment != " s")
        return std::nullopt;
    return std::chrono::seconds(*seconds) + milliseconds(*thousandths);
}

bool isWord(std::string_view comment, std::string_view word)
{
    comment.remove_prefix(std::min(comment.find_first_not_of(' '), comment.size()));
    return comment.starts_with(word);
}

std::string textOf(const Recording::Answer& answer)
{
    std::string text;
    for (const Recording::Piece& piece : answer)
        text += piece.bytes;
    return text;
}

bool isRequest(std::string_view command)
{
    return !command.empty() && command.find_first_not_of("0123456789ABCDEF") == std::string_view::npos;
}

/// What commands are known by.
std::string nameOf(std::string_view command) { return compactCommand(command); }

} // namespace

/// Takes the lines of a transcript, one after the other.
class Recording::Reader {
public:
    void take(const TranscriptLine& line)
    {
        switch (line.kind) {
        case TranscriptLine::Kind::comment:
            takeComment(line.text);
            break;
        case TranscriptLine::Kind::command:
            exchanges_.push_back({.opening = openings_, .command = nameOf(line.bytes), .answer = {}});
            last_ = now_;
            break;
        case TranscriptLine::Kind::reply:
            if (!exchanges_.empty())
                takeReply(line.bytes);
            break;
        }
    }

    /// Replies that users have written down may lack their prompts.
    std::vector<Exchange> finish()
    {
        const auto hasPrompt = [](const Exchange& exchange) {
            return textOf(exchange.answer).find(ReplyBuffer::prompt) != std::string::npos;
        };
        if (std::ranges::none_of(exchanges_, hasPrompt)) {
            for (Exchange& exchange : exchanges_)
                exchange.answer.push_back({.bytes = std::string{'\r', ReplyBuffer::prompt}});
        }
        return std::move(exchanges_);
    }

private:
    void takeComment(std::string_view comment)
    {
        if (const auto time = timeIn(comment)) {
            now_ = *time;
        } else if (isWord(comment, "opened com")) {
            ++openings_;
            now_ = last_ = {};
        } else if (isWord(comment, "closed") && !exchanges_.empty() && exchanges_.back().answer.empty()) {
            exchanges_.pop_back(); // nobody has waited for the answer
        }
    }

    void takeReply(const std::string& bytes)
    {
        Answer& answer = exchanges_.back().answer;
        if (answer.empty() || now_ != last_)
            answer.push_back({.wait = std::clamp(now_ - last_, milliseconds(0), longestWait), .bytes = {}});
        answer.back().bytes += bytes;
        last_ = now_;
    }

    std::vector<Exchange> exchanges_;
    std::size_t openings_ = 0;
    milliseconds now_{0};
    milliseconds last_{0}; ///< of what was sent or received last
};

Recording::Recording(std::string_view transcript)
{
    Reader reader;
    readTranscriptLines(transcript, [&reader](const TranscriptLine& line) { reader.take(line); });
    exchanges_ = reader.finish();
    if (!exchanges_.empty())
        openings_ = exchanges_.back().opening;
}

void Recording::open()
{
    const std::size_t first = exchanges_.empty() ? 0 : exchanges_.front().opening;
    const std::size_t present = first + opened_++ % (openings_ - first + 1);
    answers_.clear();
    begun_.clear();
    hasEcho_ = false;
    for (const Exchange& exchange : exchanges_) {
        if (exchange.opening == present)
            answers_[exchange.command].all.push_back(&exchange.answer);
    }
    const auto own = answers_;
    for (const Exchange& exchange : exchanges_) {
        if (!own.contains(exchange.command))
            answers_[exchange.command].all.push_back(&exchange.answer);
    }
}

bool Recording::isKnown(std::string_view command) const { return answers_.contains(nameOf(command)); }

Recording::Answer Recording::answer(std::string_view sent)
{
    if (begun_.empty() && isKnown(sent))
        return answerToOne(sent);
    begun_ += sent;
    Answer answer;
    for (auto end = begun_.find(commandEnd); end != std::string::npos; end = begun_.find(commandEnd)) {
        const Answer one = answerToOne(std::string_view(begun_).substr(0, end + 1));
        answer.insert(answer.end(), one.begin(), one.end());
        begun_.erase(0, end + 1);
        if (begun_ == "\n")
            begun_.clear();
    }
    return answer;
}

Recording::Answer Recording::answerToOne(std::string_view command)
{
    const auto found = answers_.find(nameOf(command));
    if (found == answers_.end())
        return unknown(command);
    auto& [all, next] = found->second;
    const Answer& answer = *all.at(std::min(next, all.size() - 1));
    ++next;
    hasEcho_ = nameOf(textOf(answer)).starts_with(nameOf(command));
    return answer;
}

Recording::Answer Recording::unknown(std::string_view command) const
{
    const std::string name = nameOf(command.substr(0, command.find(commandEnd)));
    std::string text = hasEcho_ ? std::string(command) : "";
    text += isRequest(name) ? "NO DATA" : "?";
    text += std::string{commandEnd, commandEnd, ReplyBuffer::prompt};
    return {{.bytes = text}};
}

} // namespace zint
