#pragma once

#include "link/adapterLink.h"
#include "shared/clock.h"
#include "shared/outputBox.h"
#include "shared/prompts.h"
#include "terminal/binaryReply.h"
#include "terminal/terminalCounters.h"
#include "terminal/terminalOptions.h"
#include "terminal/terminalPanel.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>

namespace zint {

/// The command terminal's work: sends what the user types, once or over and over, and shows what comes back:
/// each line at once and as it is, where other tools wait for complete replies.
class Terminal final : private AdapterLink::Listener {
public:
    /// What the terminal asks of its surroundings; all of it outlives the terminal.
    struct Surroundings {
        AdapterLine line;
        const Clock& clock;
        Prompts& prompts;
        OutputBox& outBox;
    };

    explicit Terminal(Surroundings surroundings);

    void unload(); ///< the window goes away: closes the port

    void pressOpenCom();   ///< opens the port and resets the adapter, or closes it
    void pressSendCom();   ///< sends the command; on a closed port it says what to do first
    void pressRepeatCom(); ///< begins or ends sending the command over and over; likewise

    void setCommand(const std::string& text) { inBox_ = text; }             ///< as typed
    void setOptions(const TerminalOptions& options) { options_ = options; } ///< from the next reply on

    void clearOutput();
    void clearCounters();
    void showStatistics();

    /// Takes what follows the next prompt for replies in bytes, see BinaryReply.
    void expectBinaryReplies();

    /// A reset without an answer is told and no more, where nobody could type what is sent behind it.
    void sendNothingAfterTimeout() { sendsAfterTimeout_ = false; }

    bool isOpen() const { return link_.isOpen(); }
    bool isRepeating() const { return repeating_; }

    /// Whether the adapter has been reset and waits for commands.
    bool isReady() const { return link_.isReady() && replies_ != Replies::binaryStartUp; }

    /// Tells that a file was written, or why not.
    void showStatus(const std::string& text);

    /// How the port or the adapter's silence ended the last exchange, see AdapterLink.
    const std::string& lastFailure() const { return link_.lastFailure(); }

    TerminalCounters counters() const;
    const TerminalPanel& panel() const { return panel_; }
    std::function<void()> onChanged; ///< called when the panel may have changed
    std::function<void()> onPrompt;  ///< called when the adapter waits for a command

private:
    enum class Replies { text, binaryStartUp, binary };

    void linkReset() override;
    void linkReady() override;
    void linkReply(std::string_view group) override;
    void linkReceived() override;
    void linkNotice(std::string_view text) override;
    void linkTimedOut() override;
    void linkLost() override;

    void open();
    void close();
    void askToOpen();
    void send();
    void takeTextLine();
    void takeAnswer(std::string_view answer, std::string_view prefix = {});
    void becomeReady();
    void keep(const std::string& reply);
    void showOutput(const std::string& output);
    void refreshCounters();
    void setStatus(std::string_view words);
    void updateControls();
    void changed();

    Surroundings around_;
    AdapterLink link_;
    const std::string portName_;
    TerminalOptions options_;
    TerminalPanel panel_;
    TerminalCounters counters_;            ///< but for what the link counts
    std::deque<std::string> replyHistory_; ///< the last replies as they were shown, the oldest first
    BinaryReply binary_;

    Replies replies_ = Replies::text;
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
