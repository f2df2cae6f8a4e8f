#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zint {

/// Divides received text into the groups that a port's notifications deliver, so that a tool sees the same
/// whether a driver hands over whole replies or single characters.
///
/// A group ends with a line end (CR, or CR LF) or with the prompt ">". A line end right before a prompt comes
/// together with it: "41 0C 1A F8 " CR | CR ">".
class ReceiveGroups {
public:
    void append(std::string_view received) { text_ += received; }

    /// The next group; nothing while it is incomplete.
    std::optional<std::string> take();

    /// How long what is incomplete waits for more before it is delivered all the same: behind a line end
    /// longer than drivers hold a short text back; in the middle of a line longer than adapters take from one
    /// dot of "BUS INIT: ..." to the next, for a tool that answers half a line would end the search.
    std::chrono::milliseconds pause() const;

    /// What stays incomplete, for the end of the pause; may be empty.
    std::string takeRest();

    bool isEmpty() const { return text_.empty(); }
    void clear() { text_.clear(); }

private:
    static constexpr std::size_t longest = 4096; ///< noise without any line end is not kept waiting

    std::size_t endOfGroup() const;

    std::string text_;
};

} // namespace zint
