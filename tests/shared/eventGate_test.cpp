#include "shared/eventGate.h"
#include "shared/runTimeError.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

struct EventGateTest : testing::Test {
    EventGate gate;
    std::string log;

    void note(const std::string& text) { log += text + "|"; }
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
    EXPECT_EQ(log, "first begins|first ends|second begins|second ends|third|fourth|fifth|");
}

TEST_F(EventGateTest, ShowsAFailureHoldsEventsMeanwhileAndGoesOn)
{
    gate.run([] { throw RunTimeError::divisionByZero(); }); // nobody is told
    gate.onError = [this](const std::string& text, const std::string& reason) {
        note(text + reason);
        gate.run([this] { note("button"); });
        note("box closes");
    };
    gate.run([] { throw RunTimeError(RunTimeError::Fault::typeMismatch, " - cell 3"); });
    gate.run([] { throw std::invalid_argument("plain text"); });
    gate.run([this] { note("next"); });
    EXPECT_EQ(
        log,
        "Run-time error 13: Type mismatch - cell 3|box closes|button|plain text|box closes|button|next|");
}

} // namespace
} // namespace zint
