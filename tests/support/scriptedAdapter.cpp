#include "support/scriptedAdapter.h"

#include <gtest/gtest.h>

namespace zint {

ScriptedAdapter::Step& ScriptedAdapter::Step::answer(std::string text)
{
    pieces_.push_back(std::move(text));
    return *this;
}

ScriptedAdapter::Step& ScriptedAdapter::Step::inChunksOf(std::size_t characters)
{
    std::string text;
    for (const std::string& piece : std::exchange(pieces_, {}))
        text += piece;
    for (std::size_t start = 0; start < text.size(); start += characters)
        pieces_.push_back(text.substr(start, characters));
    return *this;
}

ScriptedAdapter::Step& ScriptedAdapter::Step::vanishes()
{
    vanishes_ = true;
    return *this;
}

ScriptedAdapter::Step& ScriptedAdapter::expect(std::string written)
{
    return steps_.emplace_back(std::move(written));
}

void ScriptedAdapter::expectOpening()
{
    expect("ATZ\r").answer("ATZ\r\r\rELM327 v1.5\r\r>");
    expect("ATE0\r").answer("ATE0\rOK\r\r>");
}

void ScriptedAdapter::play()
{
    while (!due_.empty()) {
        const Delivery delivery = std::move(due_.front());
        due_.pop_front();
        if (delivery.vanishes)
            vanish();
        else
            receive(delivery.text);
    }
}

void ScriptedAdapter::receive(const std::string& text)
{
    if (!open_)
        return;
    received_ += text;
    if (inBufferCount() >= receiveThreshold() && receiveThreshold() > 0)
        notify(commEvent::receive);
}

void ScriptedAdapter::sendEvent(int code)
{
    notify(code);
}

void ScriptedAdapter::vanish()
{
    due_.clear();
    writeError_ = CommError(5, "Input/output error");
    openError_ = CommError(2, "No such file or directory");
    notify(commEvent::deviceGone);
}

void ScriptedAdapter::workAgain()
{
    openError_.reset();
    writeError_.reset();
}

void ScriptedAdapter::notify(int event)
{
    if (gate_ == nullptr)
        return notifyNow(event);
    gate_->run([this, event, opening = openings_] {
        const bool nothingLeft = event == commEvent::receive && received_.empty();
        if (open_ && opening == openings_ && !nothingLeft)
            notifyNow(event);
    });
}

void ScriptedAdapter::notifyNow(int event)
{
    lastEvent_ = event;
    if (onComm)
        onComm();
}

void ScriptedAdapter::verifyAllUsed()
{
    for (; used_ < steps_.size(); ++used_)
        ADD_FAILURE() << "never written: " << testing::PrintToString(steps_[used_].written_);
}

void ScriptedAdapter::open()
{
    if (openError_)
        throw CommError(*openError_);
    EXPECT_FALSE(open_) << "opened twice";
    open_ = true;
    ++openings_;
    history_.push_back("open " + std::to_string(commPort()) + " " + settings());
}

void ScriptedAdapter::close()
{
    if (!open_)
        return;
    open_ = false;
    received_.clear();
    due_.clear();
    history_.emplace_back("close");
}

void ScriptedAdapter::output(std::string_view text)
{
    if (!open_)
        throw CommError(9, "The port is not open");
    if (writeError_)
        throw CommError(*writeError_);
    history_.emplace_back(text);
    if (used_ == steps_.size()) {
        ADD_FAILURE() << "nothing more was expected, but written was " << testing::PrintToString(text);
        return;
    }
    const Step& step = steps_[used_];
    if (step.written_ != text) {
        ADD_FAILURE() << "expected " << testing::PrintToString(step.written_) << ", but written was "
                      << testing::PrintToString(text);
        return;
    }
    ++used_;
    for (const std::string& piece : step.pieces_)
        due_.push_back({.text = piece});
    if (step.vanishes_)
        due_.push_back({.vanishes = true});
}

} // namespace zint
