#pragma once

#include "link/connectionChoice.h"
#include "link/serialPort.h"
#include "shared/clock.h"
#include "shared/outputBox.h"
#include "shared/prompts.h"
#include "shared/timer.h"
#include "terminal/binaryReply.h"
#include "terminal/replyHistory.h"
#include "terminal/terminalCounters.h"
#include "terminal/terminalOptions.h"
#include "terminal/terminalPanel.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace zint {

/// The command terminal's work: sends what the user types, once or over and over, and shows what comes back.
///
/// It speaks to the adapter by itself, as its user wants to see each line at once and as it is, where other
/// tools wait for complete replies.
class Terminal {
public:
    /// What the terminal asks of its surroundings; all of it outlives the terminal.
    struct Surroundings {
        SerialPort& port;
        Timer& timer;
        const Clock& clock;
        Prompts& prompts;
        OutputBox& outBox;
    };

    Terminal(Surroundings surroundings, const ConnectionChoice& choice);

    void unload(); ///< the window goes away: closes the port

    void pressOpenCom();   ///< opens the port and resets the adapter, or closes it
    void pressSendCom();   ///< sends the command; on a closed port it says what to do first
    void pressRepeatCom(); ///< begins or ends sending the command over and over; likewise

    void setCommand(const std::string& text) { inBox_ = text; }             ///< as typed
    void setOptions(const TerminalOptions& options) { options_ = options; } ///< from the next reply on

    void clearOutput();
    void clearCounters();
    void showStatistics();

    /// Takes what follows the next prompt for replies in bytes. No adapter of today answers so by itself.
    void expectBinaryReplies() { linkState_ = State::binaryStartUp; }

    /// A reset without an answer is told and no more, where nobody could type what is sent behind it.
    void sendNothingAfterTimeout() { sendsAfterTimeout_ = false; }

    bool isOpen() const { return around_.port.isOpen(); }
    bool isRepeating() const { return repeating_; }

    /// Whether the adapter has been reset and waits for commands.
    bool isReady() const { return isOpen() && (linkState_ == State::text || linkState_ == State::binary); }

    /// Tells that a file was written, or why not.
    void showStatus(const std::string& text);

    const TerminalCounters& counters() const { return counters_; }
    const TerminalPanel& panel() const { return panel_; }
    std::function<void()> onChanged; ///< called when the panel may have changed
    std::function<void()> onPrompt;  ///< called when the adapter waits for a command

private:
    enum class State { resetSent, echoOffSent, binaryStartUp, binary, text };

    void open();
    void close();
    void takeNotice(PortNotice notice);
    void receive();
    void takeBanner();
    void takeStartUp(std::string_view prefix, State next);
    void takeLineToPrompt(std::string_view prefix);
    void takeTextLine();
    void prompted();
    void endConnection(std::string_view status);
    void timedOut();
    void askToOpen();
    void send();
    void write(std::string_view command);
    void showOutput();
    void refreshCounters();
    void updateControls();
    void changed();

    Surroundings around_;
    const ConnectionChoice choice_;
    TerminalOptions options_;
    TerminalPanel panel_;
    TerminalCounters counters_;
    ReplyHistory history_;
    BinaryReply binary_;

    State linkState_ = State::resetSent;
    std::string inBox_;
    std::string rxBuf_;              ///< received and not consumed
    std::string cmdEcho_;            ///< the last command as the output box shows it
    std::string output_;             ///< of the notification that is being handled
    bool lastLineHadPrompt_ = false; ///< the last line that was taken in text mode ended in one
    bool promptSeen_ = false;        ///< the notification that is being handled ended in one
    bool sendsAfterTimeout_ = true;

    bool repeating_ = false;
    std::int64_t repeatCount_ = 0;
    std::chrono::microseconds repeatStart_{};
};

} // namespace zint
