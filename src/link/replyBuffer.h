#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zint {

/// Where the line ends in which the adapter reports that it had to initialise the vehicle's bus: at its line
/// feed, or also at its carriage return where the adapter sends no line feeds.
enum class BusNotice { endsWithLine, endsWithLineFeed };

/// Collects received text into replies. A reply is complete when the prompt ">" is the last character
/// received; text comes in pieces of any size. A prompt with something behind it completes nothing.
class ReplyBuffer {
public:
    static constexpr char prompt = '>';

    explicit ReplyBuffer(BusNotice busNotice = BusNotice::endsWithLine) : busNotice_(busNotice) {}

    /// Adds received text. A bus notice is dropped once the prompt has come, so that a reply begins with its
    /// data.
    void append(std::string_view received);

    /// @return the complete reply, prompt included, which then leaves the buffer; nothing while it is
    /// incomplete
    std::optional<std::string> takeReply();

    void clear() { text_.clear(); }

private:
    BusNotice busNotice_;
    std::string text_;
};

} // namespace zint
