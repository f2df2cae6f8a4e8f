#include "support/scriptedAdapter.h"
#include "support/scriptedPrompts.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace zint {
namespace {

// Most tests rest on these two noticing what they should.

TEST(ScriptedAdapterTest, FailsTheTestOnWhatWasNotExpected)
{
    ScriptedAdapter adapter;
    adapter.open();
    EXPECT_NONFATAL_FAILURE(adapter.output("0101\r"), "written was \"0101\\r\"");
    adapter.expect("03\r");
    EXPECT_NONFATAL_FAILURE(adapter.output("04\r"), "expected \"03\\r\", but written was \"04\\r\"");
    EXPECT_NONFATAL_FAILURE(adapter.verifyAllUsed(), "never written: \"03\\r\"");
}

TEST(ScriptedAdapterTest, DeliversAnswersInPlayOnlyAndNoneAfterTheClose)
{
    ScriptedAdapter adapter;
    adapter.setReceiveThreshold(1);
    std::vector<std::string> pieces;
    adapter.onComm = [&] { pieces.push_back(adapter.input()); };
    adapter.expect("A\r").answer("12345").inChunksOf(2);
    adapter.expect("B\r").answer("6");
    adapter.open();
    adapter.output("A\r");
    EXPECT_TRUE(pieces.empty());
    adapter.play();
    EXPECT_EQ(pieces, (std::vector<std::string>{"12", "34", "5"}));
    adapter.output("B\r");
    adapter.close();
    adapter.play();
    EXPECT_EQ(pieces.size(), 3U);
}

TEST(ScriptedPromptsTest, FailsTheTestOnWhatWasNotExpected)
{
    EXPECT_NONFATAL_FAILURE(ScriptedPrompts().message("text", ""), "unexpected message: text");
    EXPECT_NONFATAL_FAILURE(ScriptedPrompts().confirm("text", ""), "unexpected question: text");
    EXPECT_NONFATAL_FAILURE(ScriptedPrompts().willAnswer(true), "never asked for");
}

} // namespace
} // namespace zint
