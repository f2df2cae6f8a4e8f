#include "link/transcriptText.h"

#include "link/replyBuffer.h"
#include "shared/module1.h"
#include "shared/textFile.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

namespace zint {
namespace {

constexpr char promptMark = ReplyBuffer::prompt;
constexpr char commentMark = '#';
constexpr char escapeMark = '\\';
constexpr std::string_view blanks = " \t";

/// How a line of a transcript ends, and what it stands for.
struct LineEnd {
    std::string_view mark;
    std::string_view bytes;
};
constexpr LineEnd withLineFeed{"\\n", "\r\n"};
constexpr LineEnd withNothing{"\\", ""};
constexpr LineEnd usualEnd{"", "\r"};
constexpr std::array lineEnds = {withLineFeed, withNothing, usualEnd};

std::string_view blankless(std::string_view text) { return trimmed(text, blanks); }

bool isPrompt(std::string_view text) { return blankless(text) == std::string_view(&promptMark, 1); }

/// The text with "\xNN" as the bytes that they stand for.
std::string unescaped(std::string_view text)
{
    constexpr std::size_t escapeLength = 4;
    std::string bytes;
    bytes.reserve(text.size() + 2);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::string_view digits = text.substr(i).starts_with("\\x") ? textAt(text, i + 3, 2) : "";
        const bool isEscape = digits.size() == 2 && digits.find(' ') == std::string_view::npos;
        if (const auto byte = isEscape ? hexIn(digits) : std::nullopt) {
            bytes += static_cast<char>(*byte);
            i += escapeLength - 1;
        } else {
            bytes += text[i];
        }
    }
    return bytes;
}

std::string bytesOf(std::string_view text)
{
    const auto* const end =
        std::ranges::find_if(lineEnds, [text](const LineEnd& known) { return text.ends_with(known.mark); });
    text.remove_suffix(end->mark.size());
    return unescaped(text).append(end->bytes);
}

TranscriptLine readLine(std::string_view line)
{
    using LineKind = TranscriptLine::Kind;
    if (line.starts_with(commentMark))
        return {.kind = LineKind::comment, .text = line.substr(1), .bytes = {}};
    if (isPrompt(line))
        return {.kind = LineKind::reply, .text = line, .bytes = std::string(line)};
    if (!line.starts_with(promptMark))
        return {.kind = LineKind::reply, .text = line, .bytes = bytesOf(line)};
    const std::string_view command = blankless(line.substr(1));
    return {.kind = LineKind::command, .text = command, .bytes = bytesOf(command)};
}

/// Whether a character stands for itself anywhere in a line.
bool isPlain(char c) { return c >= ' ' && c <= '~' && c != escapeMark && c != promptMark; }

void writeEscaped(std::string& transcript, char byte)
{
    transcript += "\\x";
    transcript += hexText(static_cast<unsigned char>(byte), 2);
}

void writeText(std::string& transcript, std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto plain = static_cast<std::size_t>(std::ranges::find_if_not(bytes, isPlain) - bytes.begin());
        transcript += bytes.substr(0, plain);
        bytes.remove_prefix(plain);
        if (bytes.empty())
            return;
        writeEscaped(transcript, bytes.front());
        bytes.remove_prefix(1);
    }
}

void endLine(std::string& transcript, const LineEnd& end)
{
    transcript += end.mark;
    transcript += lineEnd;
}

/// Takes the line end away that a text ends with.
LineEnd takeEnd(std::string_view& bytes)
{
    const LineEnd end = bytes.ends_with(withLineFeed.bytes) ? withLineFeed
                        : bytes.ends_with(usualEnd.bytes)   ? usualEnd
                                                            : withNothing;
    bytes.remove_suffix(end.bytes.size());
    return end;
}

/// The first line of a text, its end included; all where there is none.
std::string_view firstLine(std::string_view bytes)
{
    const std::size_t end = bytes.find(usualEnd.bytes);
    if (end == std::string_view::npos)
        return bytes;
    return bytes.substr(0, bytes.substr(end).starts_with(withLineFeed.bytes) ? end + 2 : end + 1);
}

} // namespace

void readTranscriptLines(std::string_view transcript, const std::function<void(const TranscriptLine&)>& take)
{
    if (transcript.starts_with(byteOrderMark))
        transcript.remove_prefix(byteOrderMark.size());
    while (!transcript.empty()) {
        const std::size_t end = std::min(transcript.find_first_of("\r\n"), transcript.size());
        take(readLine(transcript.substr(0, end)));
        const std::size_t behind = transcript.substr(end).starts_with(lineEnd) ? end + 2 : end + 1;
        transcript.remove_prefix(std::min(behind, transcript.size()));
    }
}

void writeSent(std::string& transcript, std::string_view bytes)
{
    if (bytes.empty())
        return;
    LineEnd end = takeEnd(bytes);
    transcript += promptMark;
    transcript += ' ';
    const std::size_t start = transcript.size();
    writeText(transcript, bytes);
    if (blankless(transcript.substr(start)).size() < transcript.size() - start) { // readers drop blanks
        transcript.resize(start);
        for (const char byte : bytes)
            writeEscaped(transcript, byte);
    }
    if (bytes.empty() && end.mark.empty()) { // the line would be a prompt
        writeEscaped(transcript, '\r');
        end = withNothing;
    }
    endLine(transcript, end);
}

void writeReceived(std::string& transcript, std::string_view bytes)
{
    while (!bytes.empty()) {
        std::string_view line = firstLine(bytes);
        bytes.remove_prefix(line.size());
        const LineEnd end = takeEnd(line);
        if (end.bytes.empty() && isPrompt(line) && line.find('\t') == std::string_view::npos) {
            transcript += line;
            transcript += lineEnd;
            continue;
        }
        if (line.starts_with(commentMark)) {
            writeEscaped(transcript, commentMark);
            line.remove_prefix(1);
        }
        writeText(transcript, line);
        endLine(transcript, end);
    }
}

void writeComment(std::string& transcript, std::string_view text)
{
    transcript += commentMark;
    transcript += ' ';
    transcript += text;
    transcript += lineEnd;
}

std::string compactCommand(std::string_view text)
{
    std::string letters = upperCase(text);
    std::erase_if(letters, [](char letter) { return blanks.find(letter) != std::string_view::npos; });
    return letters;
}

} // namespace zint
