#include "support/scriptedAdapter.h"
#include "support/scriptedPrompts.h"

#include <gtest/gtest-spi.h>

namespace zint {
namespace {

// Most tests rest on these two noticing what they should.
TEST(ScriptTest, FailsTheTestOnWhatWasNotExpected)
{
    static ScriptedAdapter adapter; // what fails runs in a function of its own
    adapter.open(PortNumber{1}, 9600);
    EXPECT_FATAL_FAILURE(adapter.output("04\r"), "unexpected: \"04\\r\"");
    EXPECT_NONFATAL_FAILURE(ScriptedAdapter().expect("03\r"), "never written: \"03\\r\"");
    EXPECT_NONFATAL_FAILURE(ScriptedPrompts().message("text", "", ""), "unexpected message: text");
    EXPECT_NONFATAL_FAILURE(ScriptedPrompts().confirm("text", ""), "unexpected question: text");
}

} // namespace
} // namespace zint
