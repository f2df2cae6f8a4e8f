#pragma once

#include "link/commError.h"
#include "link/connectionChoice.h"
#include "link/linkCounters.h"
#include "link/replyBuffer.h"
#include "link/serialPort.h"
#include "shared/timer.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace zint {

/// What a conversation with the adapter runs on. All of it outlives the link, which has the timers for
/// itself.
struct AdapterLine {
    SerialPort& port;
    ConnectionChoice choice;
    Timer& timer;             ///< for the reset
    Timer* silence = nullptr; ///< adds to the status when an answer is 10 s late; null: nobody wants to know
};

/// The conversation with the adapter that all tools have in common: one exchange at a time.
///
/// open() resets the adapter ("ATZ") under a time-out and switches its echo off ("ATE0"); from then on each
/// complete reply goes to the listener, and no time-out applies, since a vehicle may take any time to answer.
/// close() restores the adapter's defaults ("ATD") and closes the port. The link also keeps what a tool shows
/// of it: the status text and the counter line.
///
/// Everything runs on one thread.
class AdapterLink {
public:
    static constexpr std::string_view resetCommand = "ATZ";
    static constexpr std::string_view nameCommand = "ATI";

    /// What a user may report of a time-out.
    static constexpr std::string_view timeoutText = "Timeout responding to ATZ";

    static constexpr std::string_view notRespondingText =
        "OBD is not responding... Please verify connections between computer and vehicle";

    /// A tool. Each call comes from the port's notification or the timer's tick; the listener may send or
    /// close in it.
    class Listener {
    public:
        /// The adapter is reset; its echo is being switched off.
        virtual void linkReset() {}

        /// The adapter is reset and its echo is off: time for the first request.
        virtual void linkReady() = 0;

        /// A complete reply, prompt included, or a group: see Delivery. It is valid during the call only.
        virtual void linkReply(std::string_view reply) = 0;

        /// Received characters have been dealt with, whether they completed a reply or not, and the counters
        /// refreshed.
        virtual void linkReceived() = 0;

        /// The port reports something that it does not explain; the error is counted.
        /// @param text what a status says of it
        virtual void linkNotice(std::string_view text) = 0;

        /// Nothing has arrived for a while; the status says so. See AdapterLine.
        virtual void linkSilent() {}

        /// The reset, or what else is guarded, was not answered in time; the error is counted, the port still
        /// open.
        virtual void linkTimedOut() = 0;

        /// The device has vanished; the error is counted, the status says so, the timer is stopped and the
        /// port closed.
        virtual void linkLost() = 0;

    protected:
        ~Listener() = default;
    };

    /// What linkReply() gets.
    enum class Delivery {
        replies, ///< complete replies that begin with their data, see ReplyBuffer
        groups,  ///< each group as the port delivers it, see ReceiveGroups
    };

    /// Does not open the port yet.
    AdapterLink(AdapterLine line, Listener& listener, Delivery delivery = Delivery::replies);

    /// What the time-out guards: the reset's answer alone, or all answers up to close(), for an exchange that
    /// a silent vehicle must not keep open. It starts anew when the reset is answered.
    enum class Guard { reset, exchange };

    /// What is sent first. Some adapters drop their wireless connection at a reset; to ask for the name
    /// changes nothing. Its tool then sets up what it needs.
    enum class Opening { reset, gentle };

    /// Opens the port and sends the first command. @return false when that failed; the status then says why
    bool open(Guard guard = Guard::reset, Opening opening = Opening::reset);

    /// Resets the adapter within the exchange and opens that anew: linkReset() and linkReady() come again.
    /// Legal while the link is open and no answer is outstanding.
    void reset();

    /// Why the last exchange could not begin, or what ended it: the port's failure with the port's name, or
    /// `notRespondingText`. Empty when there was nothing of that kind.
    const std::string& lastFailure() const { return failure_; }

    /// Stops the time-out, restores the adapter's defaults and closes the port. Does nothing on a closed
    /// link.
    void close();

    bool isOpen() const { return line_.port.isOpen(); }

    /// Whether the opening is over, and the adapter takes what the tool sends.
    bool isReady() const { return isOpen() && state_ == State::ready; }

    /// The whole answer to the reset in linkReset(), to the echo-off in linkReady(); prompt included.
    const std::string& openingAnswer() const { return openingAnswer_; }

    /// Leaves bytes 00 in the groups up to the next opening; else they are dropped, for some adapters mix
    /// them in.
    void keepNulBytes() { dropsNulBytes_ = false; }

    /// The line that the adapter sent in front of the data of the last reply, such as "BUS INIT: ...ERROR";
    /// empty when there was none.
    const std::string& announcement() const { return buffer_.announcement(); }

    /// What a user who gets no answer to the reset should look at.
    std::string timeoutReason() const;

    /// Sends a command or request and its carriage return. Legal while the link is open. A device that has
    /// just vanished takes nothing; its own notice follows.
    void send(std::string_view command);

    /// The same, with a number of its own for the counter.
    void send(std::string_view command, std::int64_t countedBytes);

    /// Lets the status be the port's name and some words, or the name alone.
    void setStatus(std::string_view words);
    void appendStatus(std::string_view text) { status_ += text; }
    std::string status() const { return status_ + silenceText_; }

    /// What the status tells of silence now, such as " - no reply for 10 s"; empty when there is none.
    const std::string& silence() const { return silenceText_; }

    void countError() { ++counters_.errors; }
    void clearCounters() { counters_ = {}; }
    const LinkCounters& counters() const { return counters_; }

    void refreshCounterLine() { shownCounters_ = counters_; }
    std::string counterLine() const
    {
        return shownCounters_ ? shownCounters_->text() : LinkCounters::initialText;
    }

private:
    enum class State { resetSent, echoOffSent, ready };

    void takeNotice(PortNotice notice);
    void receive();
    std::optional<std::string> completed(const std::string& received);
    void handleReply(std::string_view reply);
    void lost();
    void timedOut();
    void write(std::string_view command, std::int64_t countedBytes);
    void waitForAnswer(bool waits);
    Heard heard() const;
    void tellOfSilence();

    AdapterLine line_;
    Listener& listener_;
    std::string silenceText_;
    State state_ = State::resetSent;
    Guard guard_ = Guard::reset;
    const Delivery delivery_;
    ReplyBuffer buffer_;
    std::string openingAnswer_;
    bool hasReceived_ = false; ///< anything since the port was opened
    bool dropsNulBytes_ = true;
    LinkCounters counters_;
    std::string status_;
    std::string failure_;
    std::optional<LinkCounters> shownCounters_; ///< as counterLine() tells them
};

} // namespace zint
