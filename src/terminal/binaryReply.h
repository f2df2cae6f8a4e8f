#pragma once

#include "terminal/terminalCounters.h"
#include "terminal/terminalOptions.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace zint {

/// Replies of an adapter that answers in bytes: a length, from 128 on for a command that failed, then so many
/// bytes. A refused command is answered by "?" and text; the prompt ends each exchange. No command of the
/// window lets an adapter answer so; the tests alone get here.
class BinaryReply {
public:
    /// What the bytes lead to.
    struct Listener {
        std::function<void(const std::string&)> show;  ///< text for the output box, in pieces
        std::function<void(const std::string&)> store; ///< a complete reply, without the command's echo
        std::function<void()> prompted;                ///< the adapter waits for a command
    };

    /// @param listener is called from take() alone
    explicit BinaryReply(Listener listener) : listener_(std::move(listener)) {}

    /// The next bytes begin a reply.
    void begin();

    /// The command is one of the adapter's own: its answer is text.
    void expectLiteral() { literalReply_ = true; }

    /// Drops what was collected of a reply, for a port that is opened.
    void clear();

    /// @param cmdEcho as the output box shows the command: ">" + command + two blanks
    void take(std::string_view bytes, std::string_view cmdEcho, const TerminalOptions& options,
              TerminalCounters& counters);

private:
    void takePrompt();
    void takeDataByte(std::uint8_t byte, bool isShortCommand, const TerminalOptions& options);
    void takeLength(std::uint8_t byte, const TerminalOptions& options, TerminalCounters& counters);
    void endReply();
    void show(const std::string& text);

    Listener listener_;
    bool literalReply_ = false;
    std::int32_t msgTotal_ = 0;     ///< the reply's length as announced
    std::int32_t msgRemaining_ = 0; ///< bytes still due
    std::string rejectedText_;
    std::string replyText_;
};

} // namespace zint
