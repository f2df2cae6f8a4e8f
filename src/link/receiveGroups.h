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
/// A group ends with a line end (CR, or CR LF) or with the prompt ">", and a line end right before a prompt
/// comes together with it: "41 0C 1A F8 " CR | CR ">". A prompt ends a group only while nothing but line ends
/// and blanks lies behind it: adapters that greet after a reset send a prompt in front of the greeting, too.
/// Half a line is never delivered, for a tool that answers it would end the adapter's search for the vehicle.
/// Line ends alone wait for what they belong to. Noise, as a wrong speed makes it, has no lines and does not
/// wait for any.
class ReceiveGroups {
public:
    /// How long a line waits for the line feed or the prompt that may belong to it: longer than drivers hold
    /// a short text back.
    static constexpr std::chrono::milliseconds patience{100};

    void append(std::string_view received) { text_ += received; }

    /// The next group; nothing while it is incomplete.
    std::optional<std::string> take();

    /// Whether a whole line is there that waits for its `patience` only.
    bool hasLine() const;

    /// All that is there: the line that has waited long enough, or what stays when nothing more can come.
    std::string takeRest();

    bool isEmpty() const { return text_.empty(); }
    void clear() { text_.clear(); }

private:
    static constexpr std::size_t longest = 4096; ///< noise without any line end is not kept waiting

    /// Where the first group ends.
    struct End {
        std::size_t position = std::string::npos; ///< npos: nowhere yet
        bool isCertain = false;                   ///< nothing that is still to come can belong to it
    };
    End endOfGroup() const;

    std::string text_;
};

} // namespace zint
