#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zint {

/// Collects received text into replies. A reply is complete when the prompt ">" is the last character
/// received; text comes in pieces of any size. A prompt with something behind it completes nothing.
class ReplyBuffer {
public:
    static constexpr char prompt = '>';

    /// Adds received text. The line in which the adapter reports that it had to initialise the vehicle's bus
    /// is dropped once the prompt has come, so that a reply begins with its data.
    void append(std::string_view received);

    /// @return the complete reply, prompt included, which then leaves the buffer; nothing while it is
    /// incomplete
    std::optional<std::string> takeReply();

    void clear() { text_.clear(); }

private:
    std::string text_;
};

} // namespace zint
