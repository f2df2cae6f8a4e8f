#include "terminal/binaryReply.h"

#include "link/replyBuffer.h"
#include "shared/textFile.h"
#include "terminal/numberText.h"

namespace zint {
namespace {

constexpr std::size_t shortEcho = 5; // of a command of two characters
constexpr std::uint8_t failedFrom = 128;

bool isPrintable(std::uint8_t byte) { return byte >= 32 && byte <= 126; }

} // namespace

void BinaryReply::begin()
{
    msgRemaining_ = 0;
    literalReply_ = false;
}

void BinaryReply::clear()
{
    rejectedText_.clear();
    replyText_.clear();
}

void BinaryReply::take(std::string_view bytes, std::string_view cmdEcho, const TerminalOptions& options,
                       TerminalCounters& counters)
{
    for (const char c : bytes) {
        const auto byte = static_cast<std::uint8_t>(c);
        const bool isDue = msgRemaining_ != 0;
        if (c == ReplyBuffer::prompt && !isDue) {
            ++counters.messagesReceived;
            takePrompt();
        } else if (c == '?' && !isDue) {
            ++counters.totalErrors;
            ++counters.commandSyntaxErrors;
            const std::string error = "(ERROR - Misformatted command)";
            replyText_ += error;
            listener_.show(error + std::string(lineEnd));
            literalReply_ = true;
        } else if (literalReply_) {
            if (isPrintable(byte))
                rejectedText_ += c;
        } else {
            if (isDue)
                takeDataByte(byte, cmdEcho.size() == shortEcho, options);
            else
                takeLength(byte, options, counters);
            if (msgRemaining_ == 0)
                endReply();
        }
    }
}

void BinaryReply::takePrompt()
{
    if (literalReply_) {
        const std::string end(lineEnd);
        listener_.show(rejectedText_ + end);
        listener_.store(replyText_ + rejectedText_ + end);
    }
    literalReply_ = false;
    clear();
    listener_.prompted();
}

/// The first two bytes repeat the command, or the first one of a short command.
void BinaryReply::takeDataByte(std::uint8_t byte, bool isShortCommand, const TerminalOptions& options)
{
    const std::int32_t place = msgTotal_ - msgRemaining_ + 1; // from 1
    if (place >= 3 || options.displayAckHdr || (place == 2 && isShortCommand))
        show(numberText(byte, options.base));
    --msgRemaining_;
}

void BinaryReply::takeLength(std::uint8_t byte, const TerminalOptions& options, TerminalCounters& counters)
{
    if (byte >= failedFrom) {
        byte = static_cast<std::uint8_t>(byte - failedFrom);
        replyText_.clear();
        show("(ERROR - Cmd FAIL)");
        ++counters.totalErrors;
        ++counters.commandFailed;
    }
    msgTotal_ = msgRemaining_ = byte;
    if (options.displayResponseLen)
        show("(" + std::to_string(byte) + ")");
}

void BinaryReply::endReply()
{
    const std::string end = (msgTotal_ == 0 ? "<NULL>" : "") + std::string(lineEnd);
    listener_.show(end);
    listener_.store(replyText_ + end);
    replyText_.clear();
}

void BinaryReply::show(const std::string& text)
{
    replyText_ += text;
    listener_.show(text);
}

} // namespace zint
