#pragma once

#include "shared/prompts.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <utility>

namespace zint {

/// A user who reads messages and answers questions as the test told before. A question without an answer
/// fails the test, and so does a message that the test does not take.
class ScriptedPrompts final : public Prompts, private Progress {
public:
    std::optional<bool> answer;        ///< to the next question
    std::optional<std::string> typed;  ///< to the next request for a text
    std::optional<std::size_t> chosen; ///< of the next list
    std::string question; ///< the last one: title, line feed, text, and what a text begins with or the lines
    std::string messageTitle, reason; ///< of the last message
    bool stopsWork = false;           ///< as soon as it tells how far it is
    std::function<void()> whileOpen;  ///< called once, while the next message is open

    ~ScriptedPrompts() override { EXPECT_EQ(message_, "") << "unexpected message: " << message_; }

    /// The message since the last call; empty when there was none.
    std::string takeMessage() { return std::exchange(message_, {}); }

    void message(const std::string& text, const std::string& title, const std::string& why) override
    {
        EXPECT_EQ(message_, "") << "two messages";
        message_ = text;
        messageTitle = title;
        reason = why;
        if (const auto action = std::exchange(whileOpen, {}))
            action();
    }

    std::optional<std::string> input(const std::string& text, const std::string& title,
                                     const std::string& initial) override
    {
        question = title + "\n" + text + initial;
        return std::exchange(typed, {});
    }

    std::optional<std::size_t> choose(const std::string& text, const std::string& title,
                                      const std::vector<std::string>& lines) override
    {
        question = title + "\n" + text;
        for (const std::string& line : lines)
            question += "\n" + line;
        return std::exchange(chosen, {});
    }

    bool confirm(const std::string& text, const std::string& title) override
    {
        EXPECT_TRUE(answer) << "unexpected question: " << text;
        question = title + "\n" + text;
        return std::exchange(answer, {}).value_or(false);
    }

    bool runLong(const std::string&, const std::function<void(Progress&)>& work) override
    {
        try {
            work(*this);
            return true;
        } catch (const WorkStopped&) {
            return false;
        }
    }

private:
    void advance(double done) override
    {
        EXPECT_TRUE(done >= 0 && done <= 1) << done;
        if (stopsWork)
            throw WorkStopped();
    }

    std::string message_;
};

} // namespace zint
