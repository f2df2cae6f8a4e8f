#include "link/replyBuffer.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

using Texts = std::vector<std::string>;

TEST(ReplyBufferTest, CompletesReplies)
{
    const std::tuple<const char*, Texts, Texts> rows[] = {
        {"character by character", {"4", "1", "\r", ">"}, {"41\r>"}},
        {"two replies in one piece", {"A\r>B\r>"}, {"A\r>B\r>"}},
        {"characters behind the prompt wait for the next", {"A\r>\r\n", "B\r>"}, {"A\r>\r\nB\r>"}},
        {"line ends and blanks behind a prompt", {"A\r>", "\r\n ", "\r", "B\r>"}, {"A\r>", "B\r>"}},

        {"dots one by one", {"BUS INIT: ", ".", "OK\r", "41 01 00 ", "\r\r>"}, {"41 01 00 \r\r>"}},
        {"its line feed comes later", {"BUS INIT: OK\r", "\n41 01 \r\n>"}, {"41 01 \r\n>"}},
        {"a long search with line feeds", {"\r\nSEARCHING.....", "..\r\n\r\n41 01 \r\n>"}, {"41 01 \r\n>"}},
        {"no search", {"SEARCHING\r41 \r>"}, {"SEARCHING\r41 \r>"}},
        {"initialisation without a line end", {"BUS INIT: ...OK>"}, {"BUS INIT: ...OK>"}},
        {"initialisation without a prompt", {"BUS INIT: ...OK\r41 01 00 \r\r"}, {}},
        {"prompt with a line feed behind it", {"BUS INIT: OK\r41 01 \r>\r\n", "X\r>"}, {"X\r>"}},
        {"line feed after a carriage return", {"BUS INIT: OK\r41 01 \r\n43 \r>"}, {"43 \r>"}},
        {"not at the beginning", {"41 \rBUS INIT: OK\r>"}, {"41 \rBUS INIT: OK\r>"}},
        {"another bus report", {"BUS ERROR\r\r>"}, {"BUS ERROR\r\r>"}},
        {"one line only", {"BUS INIT: OK\rBUS INIT: OK\r41 \r>"}, {"BUS INIT: OK\r41 \r>"}},
    };
    for (const auto& [name, pieces, expected] : rows) {
        ReplyBuffer buffer;
        Texts replies;
        for (const std::string& piece : pieces) {
            buffer.append(piece);
            if (const auto reply = buffer.takeReply())
                replies.push_back(*reply);
        }
        EXPECT_EQ(replies, expected) << name;
    }
}

TEST(ReplyBufferTest, KeepsTheAnnouncementOfAReplyUntilTheNextBegins)
{
    ReplyBuffer buffer;
    buffer.append("BUS INIT: ...ERROR\r\n\r\n>");
    EXPECT_EQ(buffer.takeReply(), ">");
    EXPECT_EQ(buffer.announcement(), "BUS INIT: ...ERROR");
    buffer.append("41 \r>");
    EXPECT_EQ(buffer.announcement(), "");
}

} // namespace
} // namespace zint
