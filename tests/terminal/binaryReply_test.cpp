#include "terminal/terminalTest.h"

namespace zint {
namespace {

/// What becomes of bytes that come one by one: what is shown, a bar, what is stored, and a bar for each
/// prompt.
struct BinaryReplyTest : testing::Test {
    std::string shown, stored;
    BinaryReply reply{{.show = [this](const std::string& text) { shown += text; },
                       .store = [this](const std::string& text) { stored += text; },
                       .prompted = [this] { stored += "|"; }}};
    TerminalCounters counters;

    std::string take(std::string_view bytes, const TerminalOptions& options = {},
                     std::string_view command = "0101")
    {
        if (command.starts_with('A'))
            reply.expectLiteral();
        for (const char byte : bytes)
            reply.take({&byte, 1}, ">" + std::string(command) + "  ", options, counters);
        return std::exchange(shown, {}) + "|" + std::exchange(stored, {});
    }
};

TEST_F(BinaryReplyTest, ShowsBytesByTheOptions)
{
    using namespace std::string_view_literals;
    const TerminalOptions length{.base = NumberBase::octal, .displayResponseLen = true};
    EXPECT_EQ(take("\x06\x41\x01\x82\x07\x65\0>"sv), "82 7 65 0 \r\n|82 7 65 0 \r\n|");
    EXPECT_EQ(take("\x03\x41\x01\x82>", {.displayAckHdr = true}), "41 1 82 \r\n|41 1 82 \r\n|");
    EXPECT_EQ(take("\x03\x43\x01\x33>", {}, "03"), "1 33 \r\n|1 33 \r\n|") << "a short command";
    EXPECT_EQ(take("\x06\x41\x01\xFF\x3F\x3E\x0D>", length), "(6)377 77 76 15 \r\n|(6)377 77 76 15 \r\n|");
    EXPECT_EQ(take("\0>"sv, length), "(0)<NULL>\r\n|(0)<NULL>\r\n|");
    EXPECT_EQ(take("\x03\x41\x01\xFF\x03\x41\x02\x0A>"), "FF \r\nA \r\n|FF \r\nA \r\n|") << "two at once";
    EXPECT_EQ(take("ELM\r\n>", {}, "ABC"), "ELM\r\n|ELM\r\n|") << "to a command of the adapter's own";
    EXPECT_EQ(take("\x03\x41\x01\x82>", {}, "ati"), "82 \r\n|82 \r\n|");
    EXPECT_EQ(counters.totalErrors, 0);
    EXPECT_EQ(take("\x83\x7F\x01\x12>"), "(ERROR - Cmd FAIL)12 \r\n|(ERROR - Cmd FAIL)12 \r\n|");
    EXPECT_TRUE(counters.totalErrors == 1 && counters.commandFailed == 1);
    const std::string refused = "(ERROR - Misformatted command)";
    EXPECT_EQ(take("?\r\n no!\x7F>"), refused + "\r\n no!\r\n|" + refused + " no!\r\n|");
    EXPECT_EQ(take("? ?>"), refused + "\r\n" + refused + "\r\n \r\n|" + refused + refused + " \r\n|");
    EXPECT_TRUE(counters.totalErrors == 4 && counters.commandSyntaxErrors == 3);
    EXPECT_EQ(counters.messagesReceived, 11) << "one for each prompt";
}

TEST_F(TerminalTest, TakesBytesAndSendsAgainAtEachPromptThatIsNoData)
{
    for (const std::string& reply : {std::string("\x05\x41"), std::string("?no"),
                                     std::string("\x04\x41\x01\0>>", 6)}) { // two are cut off by closing
        getReady();
        send("0", {"0A\r"});
        EXPECT_EQ(takeShown(), ">0  A \r\n") << "no bytes as yet";
        terminal.expectBinaryReplies();
        send("ATPD", {"ELM\r", "\n v1>"});
        EXPECT_EQ(takeShown(), ">ATPD  ATPD ELM   v1\r\n");
        send("01O1", {"?>"});
        EXPECT_EQ(takeShown(), ">01O1  (ERROR - Misformatted command)\r\n\r\n");
        adapter.expect("ATI\r").pieces = {"E>"};
        adapter.expect("\r").pieces = {"F>"};
        adapter.expect("\r");
        terminal.setCommand("ATI");
        terminal.pressRepeatCom();
        adapter.play();
        EXPECT_EQ(takeShown(), ">ATI  E\r\nF\r\n") << "text each time";
        terminal.pressRepeatCom();
        adapter.receive(">");
        takeShown();
        send("0101", {reply});
        toggle("ATD");
    }
    EXPECT_EQ(terminal.counters().totalErrors, 4);
    EXPECT_EQ(box.shown, ">0101  0 3E \r\n")
        << "also the byte of the prompt's value, at its place in the data";
}

} // namespace
} // namespace zint
