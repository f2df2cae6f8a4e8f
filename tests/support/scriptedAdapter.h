#pragma once

#include "link/commError.h"
#include "link/serialPort.h"
#include "shared/eventGate.h"

#include <gtest/gtest.h>

#include <deque>
#include <optional>
#include <vector>

namespace zint {

/// A serial port with an adapter behind it that follows a script. A write that is not the next one expected
/// fails the test, and so does a step that was never used. Answers are delivered by play() alone, never from
/// inside a call to the port. With a gate, notifications pass it as those of the real port do.
class ScriptedAdapter final : public SerialPort {
public:
    /// One expected write and the pieces in which its answer comes.
    struct Step {
        std::string written;
        std::vector<std::string> pieces;

        void answer(const std::string& text, std::size_t pieceLength = std::string::npos)
        {
            for (std::size_t start = 0; start < text.size(); start += pieces.back().size())
                pieces.push_back(text.substr(start, pieceLength));
        }
    };

    std::vector<std::string> history; ///< in order: "open com1 9600", each text written, "close"
    std::optional<CommError> openError, writeError;

    explicit ScriptedAdapter(EventGate* gate = nullptr) : gate_(gate) {}
    ~ScriptedAdapter() override
    {
        for (const Step& step : steps_)
            ADD_FAILURE() << "never written: " << testing::PrintToString(step.written);
    }

    Step& expect(std::string written) { return steps_.emplace_back(Step{std::move(written), {}}); }

    /// Expects the reset and the echo-off that begin each exchange.
    void expectOpening()
    {
        expect("ATZ\r").answer("ATZ\r\r\rELM327 v1.5\r\r>");
        expect("ATE0\r").answer("ATE0\rOK\r\r>");
    }

    /// Delivers what is due, and what becomes due by that, until nothing is left.
    void play()
    {
        while (!due_.empty()) {
            const std::string piece = due_.front();
            due_.pop_front();
            receive(piece);
        }
    }

    void receive(const std::string& text)
    {
        received_ += text;
        sendNotice(PortNotice::received);
    }

    void sendNotice(PortNotice notice)
    {
        const auto tell = [this, notice, opening = openings_] {
            if (open_ && opening == openings_ && (notice != PortNotice::received || !received_.empty()))
                onNotice(notice);
        };
        gate_ == nullptr ? tell() : gate_->run(tell);
    }

    /// The device behind the open port is gone.
    void vanish()
    {
        due_.clear();
        writeError = CommError(5, "Input/output error");
        openError = CommError(2, "No such file or directory");
        sendNotice(PortNotice::deviceGone);
    }

    void workAgain() { openError = writeError = std::nullopt; }

    void open(PortNumber number, int bitsPerSecond) override
    {
        if (openError)
            throw CommError(*openError);
        EXPECT_FALSE(open_) << "opened twice";
        open_ = true;
        ++openings_;
        history.push_back("open " + portName(number) + " " + std::to_string(bitsPerSecond));
    }

    void close() override
    {
        if (!std::exchange(open_, false))
            return;
        received_.clear();
        due_.clear();
        history.emplace_back("close");
    }

    bool isOpen() const override { return open_; }

    void output(std::string_view text) override
    {
        if (writeError)
            throw CommError(*writeError);
        EXPECT_TRUE(open_) << "written to a closed port";
        history.emplace_back(text);
        ASSERT_TRUE(!steps_.empty() && steps_.front().written == text)
            << "unexpected: " << testing::PrintToString(text);
        due_.insert(due_.end(), steps_.front().pieces.begin(), steps_.front().pieces.end());
        steps_.pop_front();
    }

    std::string input() override { return std::exchange(received_, {}); }

private:
    EventGate* gate_;
    std::deque<Step> steps_;
    std::deque<std::string> due_; ///< of the answers
    std::string received_;
    bool open_ = false;
    int openings_ = 0;
};

} // namespace zint
