#include "link/replyBuffer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zint {
namespace {

using Pieces = std::vector<std::string>;

/// The replies taken, looking after each piece as the link does.
std::vector<std::string> repliesOf(const Pieces& pieces)
{
    ReplyBuffer buffer;
    std::vector<std::string> replies;
    for (const std::string& piece : pieces) {
        buffer.append(piece);
        if (const auto reply = buffer.takeReply())
            replies.push_back(*reply);
    }
    return replies;
}

TEST(ReplyBufferTest, CompletesAReplyWithThePieceThatEndsInThePrompt)
{
    const struct {
        const char* name;
        Pieces pieces;
        std::vector<std::string> replies;
    } rows[] = {
        {"in one piece", {"41 01 00 \r\r>"}, {"41 01 00 \r\r>"}},
        {"character by character", {"4", "1", "\r", ">"}, {"41\r>"}},
        {"no prompt", {"41 01 00 \r", "\r"}, {}},
        {"nothing at all", {"", ""}, {}},
        {"prompt alone", {">"}, {">"}},
        {"one after the other", {"A\r>", "B\r", ">"}, {"A\r>", "B\r>"}},
        {"two replies in one piece", {"A\r>B\r>"}, {"A\r>B\r>"}},
        {"characters behind the prompt", {"A\r>\r\n"}, {}},
        {"the next prompt takes them along", {"A\r>\r\n", "B\r>"}, {"A\r>\r\nB\r>"}},
        {"NUL bytes", {std::string("\0A\0>", 4)}, {std::string("\0A\0>", 4)}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(repliesOf(row.pieces), row.replies) << row.name;
}

TEST(ReplyBufferTest, DropsTheLineThatReportsABusInitialisation)
{
    const struct {
        const char* name;
        Pieces pieces;
        std::vector<std::string> replies;
    } rows[] = {
        {"carriage returns", {"BUS INIT: ...OK\r41 01 00 \r\r>"}, {"41 01 00 \r\r>"}},
        {"line feeds", {"BUS INIT: OK\r\n41 01 00 \r\n\r\n>"}, {"41 01 00 \r\n\r\n>"}},
        {"dots one by one", {"BUS INIT: ", ".", ".", "OK\r", "41 01 00 ", "\r\r>"}, {"41 01 00 \r\r>"}},
        {"its line feed comes later", {"BUS INIT: OK\r", "\n41 01 \r\n>"}, {"41 01 \r\n>"}},
        {"a failed initialisation", {"BUS INIT: ...ERROR\r\r>"}, {"\r>"}},
        {"no line end", {"BUS INIT: ...OK>"}, {"BUS INIT: ...OK>"}},
        {"no prompt", {"BUS INIT: ...OK\r41 01 00 \r\r"}, {}},
        {"prompt with a line feed behind it", {"BUS INIT: OK\r41 01 \r>\r\n", "X\r>"}, {"X\r>"}},
        {"carriage return first, line feed later", {"BUS INIT: OK\r41 01 \r\n43 \r>"}, {"43 \r>"}},
        {"not at the beginning", {"\rBUS INIT: OK\r41 \r>"}, {"\rBUS INIT: OK\r41 \r>"}},
        {"another bus report", {"BUS ERROR\r\r>"}, {"BUS ERROR\r\r>"}},
        {"lower case", {"bus init: OK\r41 \r>"}, {"bus init: OK\r41 \r>"}},
        {"one line only", {"BUS INIT: OK\rBUS INIT: OK\r41 \r>"}, {"BUS INIT: OK\r41 \r>"}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(repliesOf(row.pieces), row.replies) << row.name;
}

TEST(ReplyBufferTest, ForgetsWhatWasThereWhenItIsCleared)
{
    ReplyBuffer buffer;
    buffer.append("old ");
    buffer.clear();
    buffer.append("new>");
    EXPECT_EQ(buffer.takeReply(), "new>");
    EXPECT_EQ(buffer.takeReply(), std::nullopt);
}

} // namespace
} // namespace zint
