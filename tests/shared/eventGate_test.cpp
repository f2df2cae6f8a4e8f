#include "shared/eventGate.h"
#include "shared/runTimeError.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

TEST(EventGateTest, HoldsWhatArrivesInsideAHandlerUntilItReturns)
{
    EventGate gate;
    std::string log;
    gate.run([&] {
        gate.run([&] {
            gate.run([&] { log += "fourth"; });
            log += "second ";
        });
        gate.run([&] { log += "third "; });
        log += "first ";
    });
    gate.run([&] { log += ", then fifth"; });
    EXPECT_EQ(log, "first second third fourth, then fifth");
}

TEST(EventGateTest, ShowsAFailureHoldsEventsMeanwhileAndGoesOn)
{
    EventGate gate;
    std::string log;
    gate.run([] { throw RunTimeError::divisionByZero(); }); // nobody is told
    gate.onError = [&](const std::string& text, const std::string& reason) {
        gate.run([&] { log += "button|"; });
        log += text + reason + "|";
    };
    gate.run([] { throw RunTimeError(RunTimeError::Fault::typeMismatch, " - cell 3"); });
    gate.run([] { throw std::invalid_argument("plain text"); });
    gate.run([&] { log += "next"; });
    EXPECT_EQ(log, "Run-time error 13: Type mismatch - cell 3|button|plain text|button|next");
}

} // namespace
} // namespace zint
