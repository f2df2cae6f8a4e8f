#pragma once

#include "shared/clock.h"
#include "shared/fileError.h"

#include <cstddef>
#include <deque>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace zint {

/// What goes over the wire, both ways, as a transcript: the last exchange always, in memory; while that is
/// wanted, all of it in a file, too.
///
/// A program has one. Comments tell the version, the date, the port, and the time since the port was opened
/// ("# 12.345 s").
class WireRecord {
public:
    struct Limits {
        std::size_t memory = 1 << 20; ///< in bytes; the oldest lines of a longer exchange are left out
        std::size_t file = 100 << 20; ///< in bytes; the recording then ends
    };

    /// Takes out of a transcript what tells whose vehicle it was. It gets the lines piece by piece, and keeps
    /// in mind what was asked last.
    using Mask = std::function<std::string(std::string_view)>;
    using MakeMask = std::function<Mask()>;

    /// @param clock outlives this
    WireRecord(const Clock& clock, MakeMask makeMask) : WireRecord(clock, std::move(makeMask), Limits()) {}
    WireRecord(const Clock& clock, MakeMask makeMask, Limits limits);
    ~WireRecord() { stop(); }
    WireRecord(const WireRecord&) = delete;
    WireRecord& operator=(const WireRecord&) = delete;

    // What happens to the port.
    void opened(const std::string& where);  ///< @param where port and speed, in words
    void notOpened(const std::string& why); ///< what is the same again and again is told once
    void written(std::string_view bytes);
    void received(std::string_view bytes);
    void lost(); ///< the device has vanished; the next opening goes on with the exchange
    void closed();

    bool hasExchange() const { return !head_.empty(); }

    enum class Identity { kept, leftOut };

    /// The last exchange, also while it goes on.
    std::string lastExchange(Identity identity) const;

    /// Begins to record into a file, in place of what it holds. A reply stands in it as soon as it has come,
    /// in a fast run as soon as the next command is sent.
    /// @throws FileError when it can't be written; nothing is then recorded
    void start(const std::string& path, Identity identity);

    void stop(); ///< nothing happens where nothing is recorded

    /// The file that is being recorded; empty when none is.
    const std::string& path() const { return path_; }

    /// The recording has ended by itself: the disk is full, or the file is large. The exchange goes on.
    std::function<void(const std::string& why)> onEnded;

private:
    void take(std::string_view lines);
    enum class Stamp { none, written };
    void beginLines(Stamp stamp);
    void remember(std::string_view lines);
    void dropOldest();
    void flush();
    void end(const std::string& why);
    std::string timeText() const;
    std::string programText() const;

    const Clock& clock_;
    MakeMask makeMask_;
    Limits limits_;
    std::string head_;               ///< the comments that the exchange begins with
    std::deque<std::string> blocks_; ///< what followed, each of whole lines
    std::size_t remembered_ = 0;     ///< bytes in the blocks
    bool isCut_ = false;             ///< blocks were dropped
    bool isLost_ = false;
    std::string lastFailure_; ///< to open, since the port was open last
    Clock::Time openedAt_{};
    std::optional<Clock::Time> stampedAt_; ///< the last stamp; nothing: a reply's first one is due
    std::string lines_;                    ///< room for what is being written
    std::string path_;
    std::ofstream file_;
    Mask mask_;           ///< of the file; nothing where the identity is kept
    std::string pending_; ///< not in the file yet
    std::size_t fileSize_ = 0;
    Clock::Time flushedAt_{};
};

} // namespace zint
