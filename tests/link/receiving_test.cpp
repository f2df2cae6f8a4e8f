#include "link/receiveGroups.h"
#include "link/replyBuffer.h"

#include <gtest/gtest.h>

namespace zint {
namespace {

using Texts = std::vector<std::string>;

/// What is delivered of a text that comes in pieces, and what stays.
Texts groupsOf(const Texts& pieces)
{
    ReceiveGroups groups;
    Texts delivered;
    for (const std::string& piece : pieces) {
        groups.append(piece);
        while (auto group = groups.take())
            delivered.push_back(*group);
    }
    EXPECT_EQ(groups.take(), std::nullopt);
    delivered.push_back(groups.takeRest());
    EXPECT_TRUE(groups.isEmpty());
    return delivered;
}

TEST(ReceiveGroupsTest, EndsAGroupWithItsLineOrPrompt)
{
    EXPECT_EQ(groupsOf({"41 0C 1A F8 \r\r>"}), (Texts{"41 0C 1A F8 \r", "\r>", ""}));
    EXPECT_EQ(groupsOf({"ATE0\rOK\r\n\r\n>"}), (Texts{"ATE0\r", "OK\r\n", "\r\n>", ""}));
    // Line ends wait for what they belong to.
    EXPECT_EQ(groupsOf({"OK\r>\r\n \r", "\r41 \r>"}), (Texts{"OK\r>", "\r\n \r\r41 \r>", ""}));
    // A prompt in front of something ends nothing.
    EXPECT_EQ(groupsOf({"\r\r>ELM327 v1.5\r\r>"}), (Texts{"\r\r>ELM327 v1.5\r", "\r>", ""}));
    EXPECT_EQ(groupsOf({"41 \r>42 \r>"}), (Texts{"41 \r", ">42 \r>", ""}));
    EXPECT_EQ(groupsOf({std::string("41 \r\0\r", 6), ">"}), (Texts{"41 \r", std::string("\0\r>", 3), ""}));
    EXPECT_EQ(groupsOf({"?\r"}), (Texts{"?\r"})) << "the prompt may still come";
    EXPECT_EQ(groupsOf({std::string(5000, 'x')}), (Texts{std::string(5000, 'x'), ""}));
}

TEST(ReceiveGroupsTest, ALineWaitsShortlyAndHalfALineForItsEnd)
{
    ReceiveGroups groups;
    const auto waits = [&](const char* received) {
        groups.append(received);
        EXPECT_EQ(groups.take(), std::nullopt) << received;
        return groups.hasLine();
    };
    EXPECT_FALSE(waits("SEARCHING.."));
    EXPECT_TRUE(waits(".\r")) << "a line feed or the prompt may follow";
    groups.append("\r");
    EXPECT_EQ(groups.take(), "SEARCHING...\r");
    EXPECT_FALSE(groups.hasLine()) << "what is left is no line";
    EXPECT_TRUE(waits("\xFE")) << "noise waits for no line end";
}

TEST(ReceiveGroupsTest, DoesNotDependOnThePieces)
{
    const std::string text = "ATZ\r\r\rELM327 v1.5\r\rSEARCHING...\r41 00 BE \r\n41 00 98 \r\n\r\n>";
    const Texts expected = groupsOf({text});
    EXPECT_EQ(expected.size(), 7U);
    for (std::size_t length = 1; length < text.size(); ++length) {
        Texts pieces;
        for (std::size_t at = 0; at < text.size(); at += length)
            pieces.push_back(text.substr(at, length));
        EXPECT_EQ(groupsOf(pieces), expected) << length;
    }
}

TEST(ReplyBufferTest, CompletesReplies)
{
    const std::tuple<const char*, Texts, Texts> rows[] = {
        {"character by character", {"4", "1", "\r", ">"}, {"41\r>"}},
        {"characters behind the prompt wait for the next", {"A\r>\r\n", "B\r>"}, {"A\r>\r\nB\r>"}},
        {"line ends and blanks behind a prompt", {"A\r>", "\r\n ", "\r", "B\r>"}, {"A\r>", "B\r>"}},

        {"dots one by one", {"BUS INIT: ", ".", "OK\r", "41 01 00 ", "\r\r>"}, {"41 01 00 \r\r>"}},
        {"its line feed comes later", {"BUS INIT: OK\r", "\n41 01 \r\n>"}, {"41 01 \r\n>"}},
        {"a long search with line feeds", {"\r\nSEARCHING.....", "..\r\n\r\n41 01 \r\n>"}, {"41 01 \r\n>"}},
        {"initialisation without a line end", {"BUS INIT: ...OK>"}, {"BUS INIT: ...OK>"}},
        {"initialisation without a prompt", {"BUS INIT: ...OK\r41 01 00 \r\r"}, {}},
        {"prompt with a line feed behind it", {"BUS INIT: OK\r41 01 \r>\r\n", "X\r>"}, {"X\r>"}},
        {"line feed after a carriage return", {"BUS INIT: OK\r41 01 ", "\r\n43 \r>"}, {"43 \r>"}},
        {"not at the beginning", {"41 \rBUS INIT: OK\r>"}, {"41 \rBUS INIT: OK\r>"}},
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
    EXPECT_EQ(buffer.takeReply().value() + buffer.announcement(), ">BUS INIT: ...ERROR");
    buffer.append("41 \r>");
    EXPECT_EQ(buffer.announcement(), "");
}

} // namespace
} // namespace zint
