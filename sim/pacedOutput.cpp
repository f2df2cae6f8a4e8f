#include "sim/pacedOutput.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace zint {

std::size_t PacedOutput::roomInLast() const
{
    if (pieces_.empty())
        return 0;
    if (pace_.pieceLength == 0)
        return std::numeric_limits<std::size_t>::max();
    return pace_.pieceLength - pieces_.back().text.size();
}

void PacedOutput::write(std::string_view text, Time notBefore)
{
    while (!text.empty()) {
        std::size_t room = notBefore <= end_ ? roomInLast() : 0;
        if (room == 0) {
            const Time gap = pace_.pieceLength > 0 && !pieces_.empty() ? pace_.pieceGap : Time{0};
            pieces_.push_back({.begin = std::max(notBefore, end_ + gap), .text = {}});
            end_ = pieces_.back().begin;
            room = pace_.pieceLength > 0 ? pace_.pieceLength : text.size();
        }
        const std::string_view part = text.substr(0, room);
        pieces_.back().text += part;
        end_ += pace_.perCharacter * static_cast<Time::rep>(part.size());
        text.remove_prefix(part.size());
    }
}

std::optional<PacedOutput::Time> PacedOutput::nextDue() const
{
    if (pieces_.empty())
        return {};
    return due(pieces_.front());
}

std::size_t PacedOutput::arrived(const Piece& piece, Time now) const
{
    const std::size_t left = piece.text.size() - piece.taken;
    if (due(piece) > now)
        return 0;
    if (pace_.perCharacter == Time{0})
        return left;
    return std::min(left, static_cast<std::size_t>((now - piece.begin) / pace_.perCharacter));
}

std::string PacedOutput::take(Time now)
{
    std::string taken;
    while (!pieces_.empty()) {
        Piece& piece = pieces_.front();
        const std::size_t count = arrived(piece, now);
        taken.append(piece.text, piece.taken, count);
        piece.taken += count;
        piece.begin += pace_.perCharacter * static_cast<Time::rep>(count);
        if (piece.taken < piece.text.size())
            break;
        pieces_.pop_front();
        if (pace_.pieceLength > 0)
            break;
    }
    return taken;
}

void PacedOutput::dropArrived(Time now)
{
    while (nextDue().value_or(Time::max()) <= now)
        take(now);
}

void PacedOutput::cut(Time now)
{
    while (!pieces_.empty()) {
        Piece& piece = pieces_.back();
        const std::size_t kept = arrived(piece, now);
        piece.text.resize(piece.taken + kept);
        end_ = piece.begin + pace_.perCharacter * static_cast<Time::rep>(kept);
        if (kept > 0)
            break;
        pieces_.pop_back();
    }
    end_ = std::min(end_, now);
}

} // namespace zint
