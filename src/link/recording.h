#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace zint {

/// A transcript in place of an adapter: tells what it answers.
class Recording {
public:
    /// Part of an answer.
    struct Piece {
        std::chrono::milliseconds wait{0}; ///< behind the command or the piece before, as it was recorded
        std::string bytes;
    };
    using Answer = std::vector<Piece>;

    explicit Recording(std::string_view transcript);
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;

    /// Whether nothing was sent in it.
    bool isEmpty() const { return exchanges_.empty(); }

    /// The port is opened: the next exchange of the transcript answers, behind the last the first one. It
    /// begins anew.
    void open();

    /// What follows what was sent at once. Each time a command is sent, the next answer to it; the last one
    /// from then on. An exchange without the command has the answers of all others; "?" or "NO DATA" is the
    /// answer to what was never sent.
    Answer answer(std::string_view sent);

private:
    /// A command and what followed it.
    struct Exchange {
        std::size_t opening = 0; ///< how many times the port had been opened before
        std::string command;
        Answer answer;
    };
    struct Answers {
        std::vector<const Answer*> all;
        std::size_t next = 0;
    };
    class Reader;

    bool isKnown(std::string_view command) const;
    Answer answerToOne(std::string_view command);
    Answer unknown(std::string_view command) const;

    std::vector<Exchange> exchanges_;
    std::map<std::string, Answers, std::less<>> answers_; ///< by command
    std::size_t openings_ = 0;
    std::size_t opened_ = 0; ///< how often
    std::string begun_;      ///< a command without its line end so far
    bool hasEcho_ = false;   ///< the last answer began with its command
};

} // namespace zint
