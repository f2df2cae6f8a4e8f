#pragma once

#include "shared/prompts.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace zint {

/// A user who reads messages and answers questions as the test told before. A question without an answer
/// fails the test, and so does a message or an answer that is left at the end.
class ScriptedPrompts final : public Prompts {
public:
    struct Shown {
        std::string text;
        std::string title;
        bool operator==(const Shown&) const = default;
    };

    ~ScriptedPrompts() override
    {
        for (const Shown& message : messages_)
            ADD_FAILURE() << "unexpected message: " << message.text;
        EXPECT_TRUE(answers_.empty()) << answers_.size() << " answer(s) were never asked for";
    }

    /// The answer to the next question.
    void willAnswer(bool ok) { answers_.push_back(ok); }

    /// The messages since the last call.
    std::vector<Shown> takeMessages() { return std::exchange(messages_, {}); }

    /// The text of the only message since the last call.
    std::string takeMessage()
    {
        const auto messages = takeMessages();
        EXPECT_EQ(messages.size(), 1U);
        return messages.empty() ? std::string() : messages.back().text;
    }

    const std::vector<Shown>& questions() const { return questions_; }

    /// Called once, while the next message or question is open.
    void whileOpen(std::function<void()> action) { whileOpen_ = std::move(action); }

    void message(const std::string& text, const std::string& title) override
    {
        messages_.push_back({text, title});
        stayOpen();
    }

    bool confirm(const std::string& text, const std::string& title) override
    {
        questions_.push_back({text, title});
        stayOpen();
        if (answers_.empty()) {
            ADD_FAILURE() << "unexpected question: " << text;
            return false;
        }
        const bool answer = answers_.front();
        answers_.pop_front();
        return answer;
    }

private:
    void stayOpen()
    {
        if (const auto action = std::exchange(whileOpen_, {}))
            action();
    }

    std::deque<bool> answers_;
    std::vector<Shown> messages_;
    std::vector<Shown> questions_;
    std::function<void()> whileOpen_;
};

} // namespace zint
