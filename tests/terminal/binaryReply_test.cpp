#include "terminal/terminalTest.h"

namespace zint {
namespace {

struct BinaryReplyTest : TerminalTest {
    /// Opens the port and lets replies be bytes from there on.
    void getReadyForBytes(const TerminalOptions& options)
    {
        getReady(options);
        terminal.expectBinaryReplies();
        send("ATPD", {"OK\r", "\n>"});
        terminal.clearCounters();
        takeShown();
    }

    /// What a box with the mode shows of an answer.
    std::string shown(OutputMode mode, TerminalOptions options, const std::string& command,
                      const Pieces& answer)
    {
        options.mode = mode;
        terminal.setOptions(options);
        send(command, answer);
        return takeShown();
    }
};

TEST_F(BinaryReplyTest, BeginsWithWhatTheAdapterSaysOfItself)
{
    getReady({.mode = OutputMode::append});
    terminal.expectBinaryReplies();
    takeShown();
    send("ATPD", {"ELM\r", "\n v1>"});
    EXPECT_EQ(takeShown(), ">ATPD  ATPD ELM   v1\r\n") << "the command's echo, then the answer";
    EXPECT_EQ(status(), "com3 Ready");
    terminal.setOptions({.mode = OutputMode::overwrite});
    send("0101", {std::string("\0", 1)}); // a byte is awaited: the command of before was no text's
    EXPECT_EQ(takeShown(), ">0101  <NULL>\r\n");
}

TEST_F(BinaryReplyTest, ShowsBytesByTheOptions)
{
    using namespace std::string_literals;
    struct Row {
        const char* name;
        TerminalOptions options;
        const char* command;
        std::string answer;
        std::string shown;
        int failed = 0;
        int refused = 0;
        std::optional<std::string> kept = {}; ///< if it is not what is shown
    };
    const TerminalOptions header{.displayAckHdr = true};
    const TerminalOptions length{.base = NumberBase::octal, .displayResponseLen = true};
    const TerminalOptions decimal{.base = NumberBase::decimal};
    const std::string refused = "(ERROR - Misformatted command)";
    const Row rows[] = {
        {"plain", {}, "0101", "\x06\x41\x01\x82\x07\x65\0>"s, "82 7 65 0 \r\n"},
        {"with its header", header, "0101", "\x03\x41\x01\x82>", "41 1 82 \r\n"},
        {"short command", {}, "03", "\x03\x43\x01\x33>", "1 33 \r\n"},
        {"octal, with its length", length, "0101", "\x0C\x41\x01\xFF\x0A\x3F\x3E\x0D\x05\x06\x07\x08\x09>",
         "(12)377 12 77 76 15 5 6 7 10 11 \r\n"},
        {"empty", length, "0101", "\0>"s, "(0)<NULL>\r\n"},
        {"two at once", decimal, "0101", "\x03\x41\x01\xFF\x03\x41\x02\x0A>", "255 \r\n10 \r\n", 0, 0,
         "10 \r\n"},
        {"failed", {}, "0101", "\x83\x7F\x01\x12>", "(ERROR - Cmd FAIL)12 \r\n", 1},
        {"failed without a byte", {}, "0101", "\x80>", "(ERROR - Cmd FAIL)<NULL>\r\n", 1},
        {"refused", {}, "01O1", "?\r\n no!\x7F>", refused + "\r\n no!\r\n", 0, 1, refused + " no!\r\n"},
        {"the adapter's own", {}, "ATI", "ELM\r\n>", "ELM\r\n"},
        {"a small letter", {}, "ati", "\x03\x41\x01\x82>", "82 \r\n"},
        {"prompt alone", {}, "0101", ">>", ""},
    };
    getReadyForBytes({});
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string command = row.command;
        const std::string echo = ">" + command + "  ";
        EXPECT_EQ(shown(OutputMode::append, row.options, command, {row.answer}), echo + row.shown);
        const std::int64_t messages = row.shown.empty() ? std::ssize(row.answer) : 1;
        EXPECT_EQ(counted(),
                  (std::vector<std::int64_t>{std::ssize(row.answer), messages, std::ssize(command) + 1, 1,
                                             row.failed + row.refused, 0, row.failed, row.refused}));
        if (!row.shown.empty()) {
            EXPECT_EQ(shown(OutputMode::overwrite, row.options, command, {row.answer}),
                      echo + row.kept.value_or(row.shown));
            Pieces bytes;
            for (const char byte : row.answer)
                bytes.emplace_back(1, byte);
            EXPECT_EQ(shown(OutputMode::append, row.options, command, bytes), echo + row.shown);
        }
        terminal.clearCounters();
    }
}

TEST_F(BinaryReplyTest, KeepsAReplyWhenItIsComplete)
{
    getReadyForBytes({.mode = OutputMode::overwrite, .displayResponseLen = true});
    send("0101", {"\x03"});
    EXPECT_EQ(box.shown, "ATPD OK  \r\n") << "still the last complete one";
    terminal.clearOutput();
    adapter.receive("\x41\x01\x82");
    EXPECT_EQ(takeShown(), ">0101  (3)82 \r\n");
    terminal.clearOutput();
    send("0102", {">\x03"});
    EXPECT_EQ(box.shown, "") << "clearing leaves an empty one";
}

TEST_F(BinaryReplyTest, SendsAgainAtEachPromptThatIsNoData)
{
    getReadyForBytes({.mode = OutputMode::append});
    terminal.setCommand("0101");
    adapter.expect("0101\r").pieces = {"\x03\x41\x01", ">"};
    terminal.pressRepeatCom();
    adapter.play();
    EXPECT_EQ(takeShown(), ">0101  3E \r\n") << "the byte of the prompt's value, at its place in the data";
    adapter.expect("\r");
    adapter.receive(">");
    EXPECT_EQ(counted(), (std::vector<std::int64_t>{5, 1, 6, 3, 0, 0, 0, 0}));
    terminal.pressRepeatCom();
    adapter.receive(">");
}

} // namespace
} // namespace zint
