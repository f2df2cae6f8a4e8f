#pragma once

#include "link/commError.h"
#include "link/serialPort.h"
#include "shared/eventGate.h"

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zint {

/// A serial port with an adapter behind it that follows a script.
///
/// A write that is not the next one expected fails the test, and so does a step that was never used. Answers
/// are delivered by play() alone, never from inside a call to the port. With a gate, notifications pass it as
/// those of the real port do.
class ScriptedAdapter final : public SerialPort {
public:
    /// One expected write and what comes back.
    class Step {
    public:
        explicit Step(std::string written) : written_(std::move(written)) {}

        Step& answer(std::string text);           ///< what the adapter sends, in one piece
        Step& inChunksOf(std::size_t characters); ///< cuts the answer given before
        Step& vanishes();                         ///< the device is gone once its answer has been received

    private:
        friend class ScriptedAdapter;
        std::string written_;
        std::vector<std::string> pieces_;
        bool vanishes_ = false;
    };

    explicit ScriptedAdapter(EventGate* gate = nullptr) : gate_(gate) {}
    ~ScriptedAdapter() override { verifyAllUsed(); }

    Step& expect(std::string written);

    /// Expects the reset and the echo-off that begin each exchange, and answers both.
    void expectOpening();

    /// Delivers what is due, and what becomes due by that, until nothing is left.
    void play();

    void receive(const std::string& text); ///< characters that nobody asked for
    void sendEvent(int code);
    void vanish(); ///< the device behind the open port is gone

    void refuseToOpen(CommError error) { openError_ = std::move(error); }
    void refuseToWrite(CommError error) { writeError_ = std::move(error); }
    void workAgain();

    /// What happened so far, in order: "open 1 9600,N,8,1", each text written, "close".
    const std::vector<std::string>& history() const { return history_; }

    /// Fails the test for each step that was not used.
    void verifyAllUsed();

    void open() override;
    void close() override;
    bool isOpen() const override { return open_; }
    void output(std::string_view text) override;
    std::string input() override { return takeInput(received_); }
    int inBufferCount() const override { return static_cast<int>(received_.size()); }
    int lastCommEvent() const override { return lastEvent_; }

private:
    struct Delivery {
        std::string text;
        bool vanishes = false;
    };

    void notify(int event);
    void notifyNow(int event);

    EventGate* gate_;
    std::deque<Step> steps_; // keeps its elements in place, so that a test may go on writing on a step
    std::size_t used_ = 0;
    std::deque<Delivery> due_;
    std::optional<CommError> openError_;
    std::optional<CommError> writeError_;
    std::vector<std::string> history_;
    std::string received_;
    int lastEvent_ = commEvent::receive;
    bool open_ = false;
    int openings_ = 0;
};

} // namespace zint
