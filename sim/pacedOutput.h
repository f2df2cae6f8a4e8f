#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace zint {

/// Characters on their way over a serial line, each with the moment at which it arrives.
class PacedOutput {
public:
    using Time = std::chrono::microseconds;

    struct Pace {
        Time perCharacter{0};
        std::size_t pieceLength = 0; ///< 0: as long as comes
        Time pieceGap{0};
    };

    explicit PacedOutput(Pace pace) : pace_(pace) {}

    /// Sends text behind what is already on its way, and not before the given moment.
    void write(std::string_view text, Time notBefore);

    bool empty() const { return pieces_.empty(); }

    /// When the next character arrives; nothing when none is on its way.
    std::optional<Time> nextDue() const;

    /// When the last character that was written arrives, or has arrived.
    Time end() const { return end_; }

    /// Takes what has arrived, one piece at a time where there are pieces.
    std::string take(Time now);

    /// Drops what has not arrived by now.
    void cut(Time now);

    /// Drops what has arrived by now.
    void dropArrived(Time now);

private:
    struct Piece {
        Time begin; // of the first character that is not taken yet
        std::string text;
        std::size_t taken = 0;
    };

    Time due(const Piece& piece) const { return piece.begin + pace_.perCharacter; }
    std::size_t arrived(const Piece& piece, Time now) const;
    std::size_t roomInLast() const;

    Pace pace_;
    Time end_{0};
    std::deque<Piece> pieces_;
};

} // namespace zint
