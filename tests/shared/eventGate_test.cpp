#include "shared/eventGate.h"
#include "shared/runTimeError.h"

#include <gtest/gtest.h>

#include <vector>

namespace zint {
namespace {

struct EventGateTest : testing::Test {
    EventGate gate;
    std::vector<std::string> log;

    void note(const std::string& text) { log.push_back(text); }
};

TEST_F(EventGateTest, HoldsWhatArrivesInsideAHandlerUntilItReturns)
{
    gate.run([this] {
        note("first begins");
        gate.run([this] {
            note("second begins");
            gate.run([this] { note("fourth"); });
            note("second ends");
        });
        gate.run([this] { note("third"); });
        note("first ends");
    });
    gate.run([this] { note("fifth"); });

    const std::vector<std::string> expected = {"first begins", "first ends", "second begins", "second ends",
                                               "third",        "fourth",     "fifth"};
    EXPECT_EQ(log, expected);
}

TEST_F(EventGateTest, HandsTheTextOfAFailureToItsWindowAndGoesOn)
{
    gate.onError = [this](const std::string& text) { note(text); };
    gate.run([this] {
        gate.run([this] { note("held"); });
        throw RunTimeError::overflow();
    });
    gate.run([] { throw std::invalid_argument("plain text"); });
    gate.run([this] { note("next"); });

    const std::vector<std::string> expected = {"Run-time error 6: Overflow", "held", "plain text", "next"};
    EXPECT_EQ(log, expected);
}

TEST_F(EventGateTest, HoldsEventsWhileAFailureIsShown)
{
    gate.onError = [this](const std::string&) {
        note("box opens");
        gate.run([this] { note("button"); });
        note("box closes");
    };
    gate.run([] { throw RunTimeError::typeMismatch(); });

    const std::vector<std::string> expected = {"box opens", "box closes", "button"};
    EXPECT_EQ(log, expected);
}

TEST_F(EventGateTest, SurvivesAFailureThatNobodyIsToldOf)
{
    gate.run([] { throw RunTimeError::divisionByZero(); });
    gate.run([this] { note("next"); });
    EXPECT_EQ(log, std::vector<std::string>{"next"});
}

} // namespace
} // namespace zint
