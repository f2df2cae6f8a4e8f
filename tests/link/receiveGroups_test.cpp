#include "link/receiveGroups.h"

#include <gtest/gtest.h>

#include <vector>

namespace zint {
namespace {

/// What is delivered of a text that comes in pieces, and what stays.
std::vector<std::string> groupsOf(const std::vector<std::string>& pieces)
{
    ReceiveGroups groups;
    std::vector<std::string> delivered;
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
    using Groups = std::vector<std::string>;
    EXPECT_EQ(groupsOf({"41 0C 1A F8 \r\r>"}), (Groups{"41 0C 1A F8 \r", "\r>", ""}));
    EXPECT_EQ(groupsOf({"ATE0\rOK\r\n\r\n>"}), (Groups{"ATE0\r", "OK\r\n", "\r\n>", ""}));
    // Line ends wait for what they belong to.
    EXPECT_EQ(groupsOf({"OK\r>\r\n \r", "\r41 \r>"}), (Groups{"OK\r>", "\r\n \r\r41 \r>", ""}));
    EXPECT_EQ(groupsOf({"\r\r>ELM327 v1.5\r\r>"}), (Groups{"\r\r>ELM327 v1.5\r", "\r>", ""}))
        << "a prompt in front of the greeting ends nothing";
    EXPECT_EQ(groupsOf({std::string("41 \r\0\r", 6), ">"}), (Groups{"41 \r", std::string("\0\r>", 3), ""}));
    EXPECT_EQ(groupsOf({"?\r"}), (Groups{"?\r"})) << "the prompt may still come";
    EXPECT_EQ(groupsOf({std::string(5000, 'x')}), (Groups{std::string(5000, 'x'), ""}));
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
    const std::vector<std::string> expected = groupsOf({text});
    EXPECT_EQ(expected.size(), 7U);
    for (std::size_t length = 1; length < text.size(); ++length) {
        std::vector<std::string> pieces;
        for (std::size_t at = 0; at < text.size(); at += length)
            pieces.push_back(text.substr(at, length));
        EXPECT_EQ(groupsOf(pieces), expected) << length;
    }
}

} // namespace
} // namespace zint
