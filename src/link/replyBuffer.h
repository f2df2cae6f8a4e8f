#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zint {

/// Collects received text into replies. A reply is complete when the prompt ">" is the last character
/// received; text comes in pieces of any size. A prompt with something behind it completes nothing.
///
/// A reply begins with its data: line ends and blanks in front of it are dropped, and so is the announcement,
/// a first line in which the adapter says that it had to find or to wake the vehicle: "SEARCHING...",
/// "BUS INIT: ...OK".
class ReplyBuffer {
public:
    /// @param dropsFront false: replies stay as they were received
    explicit ReplyBuffer(bool dropsFront = true) : dropsFront_(dropsFront) {}

    static constexpr char prompt = '>';

    /// What belongs to nothing in front of a reply and behind a prompt. Some adapters send bytes 00, too.
    static constexpr std::string_view filler{"\r\n \0", 4};

    /// Adds received text. An announcement is dropped once the prompt has come: up to the first line feed, or
    /// up to the first carriage return when there is no line feed.
    void append(std::string_view received);

    /// @return the complete reply, prompt included, which then leaves the buffer; nothing while it is
    /// incomplete
    std::optional<std::string> takeReply();

    /// The announcement that the reply taken last began with, without its line end; empty when it had none.
    const std::string& announcement() const { return announcement_; }

    /// Whether something is text, as adapters send it. A wrong speed makes noise of it.
    static bool isText(std::string_view received);

    /// Whether what is incomplete is text.
    bool isReadable() const { return isText(text_); }

    void clear();

private:
    void dropFiller();

    bool dropsFront_;
    std::string text_;
    std::string announcement_;
};

/// The lines of a reply that hold anything, without their ends and the prompt.
std::vector<std::string_view> replyLines(std::string_view reply);

} // namespace zint
