#include "link/portLocation.h"
#include "link/recordingPort.h"
#include "link/replayPort.h"
#include "link/transcriptText.h"
#include "support/failure.h"
#include "support/manualTime.h"
#include "support/scriptedAdapter.h"
#include "support/temporaryFolder.h"
#include "vehicle/transcriptMask.h"

namespace zint {
namespace {

using namespace std::chrono_literals;

/// The bytes of the lines of a kind.
std::string bytesIn(const std::string& transcript, TranscriptLine::Kind kind)
{
    std::string bytes;
    readTranscriptLines(transcript, [&](const TranscriptLine& line) {
        if (line.kind == kind)
            bytes += line.bytes;
    });
    return bytes;
}

TEST(TranscriptTextTest, HoldsAllBytesAsTheyWere)
{
    const std::pair<std::string, std::string> rows[] = {
        {"41 0D 00 \r\r>", "41 0D 00 \r\n\r\n>\r\n"},
        {"ATZ\r\r\nOK\r\n\r\n>", "ATZ\r\n\\n\r\nOK\\n\r\n\\n\r\n>\r\n"},
        {"\r\r>ELM327 v1.5\r", "\r\n\r\n\\x3EELM327 v1.5\r\n"},
        {">\r\n> ", "\\x3E\\n\r\n> \r\n"},
        {"#1\r# \n", "\\x231\r\n\\x23 \\x0A\\\r\n"},
        {"\\x41\\n\r\\", "\\x5Cx41\\x5Cn\r\n\\x5C\\\r\n"},
        {std::string("\0\xFF\t\n\n\r", 6), "\\x00\\xFF\\x09\\x0A\\x0A\r\n"},
        {"SEARCHING...", "SEARCHING...\\\r\n"},
    };
    for (const auto& [bytes, lines] : rows) {
        std::string written;
        writeReceived(written, bytes);
        EXPECT_EQ(written, lines);
        EXPECT_EQ(bytesIn(written, TranscriptLine::Kind::reply), bytes) << written;
    }
    for (const std::string sent :
         {"ATZ\r", "\r", "\r\n", " \r", "0100\r\n", " 01\r", "\x7F\x7F", "A\rB\r", "> #\\\r", "\\"}) {
        std::string written;
        writeSent(written, sent);
        EXPECT_EQ(bytesIn(written, TranscriptLine::Kind::command), sent) << written;
    }
}

TEST(TranscriptMaskTest, LeavesTheSerialNumberOut)
{
    const std::pair<const char*, const char*> rows[] = {
        {"014 |0: 49 02 01 31 44 34 |1: 47 50 30 30 52 35 35 |2: 42 31 32 33 34 35 36 |",
         "014 |0: 49 02 01 31 44 34 |1: 47 50 30 30 52 35 35 |2: 42 30 30 30 30 30 30 |"},
        {"7E810144902013144 34|7E82147503030523535|7E82242313233343536",
         "7E810144902013144 34|7E82147503030523535|7E82242303030303030"},
        // The first frame is lost; the second unit has another number.
        {"7E8 22 42 31 32 33 34 35 36|7E9 22 42 39 32 33 34 35 37",
         "7E8 22 42 30 30 30 30 30 30|7E9 22 42 30 30 30 30 30 30"},
        {"18 DA F1 10 10 14 49 02 01 31 44 34|18 DA F1 10 22 42 31 32 33 34 G5 36",
         "18 DA F1 10 10 14 49 02 01 31 44 34|18 DA F1 10 22 42 30 30 30 30 30 30"},
        {"49 02 03 30 30 52 35 |49 02 04 35 42 31 32 |49 02 05 33 34 35 36 ",
         "49 02 03 30 30 52 35 |49 02 04 35 42 30 30 |49 02 05 30 30 30 30 "},
        // A damaged digit, a lost one, half a line; a refusal.
        {R"(7E8 22 42 3\xB1 32 33 34 35 36|7E8 2 42 31 32 33 34 35 36|49 02 05 33 3\|7E8 03 7F 09 78)",
         R"(7E8 22 42 3\xB1 30 30 30 30 30|7E8 2 00 00 00 00 00 00 00|49 02 05 30 3\|7E8 03 7F 09 78)"},
        // The sum, and the remainder, fit before and after.
        {"48 6B 10 49 02 05 33 34 35 36 E5", "48 6B 10 49 02 05 30 30 30 30 D3"},
        {"87 F1 10 49 02 05 33 34 35 36 AA", "87 F1 10 49 02 05 30 30 30 30 98"},
    };
    const std::string note =
        "# the last six characters of the VIN are left out; its check digit may not fit|";
    const auto lines = [](std::string text, const char* from, const std::string& to) {
        for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
            text.replace(at, std::string(from).size(), to);
        return text;
    };
    for (const auto& [reply, left] : rows)
        EXPECT_EQ(lines(withoutIdentity(lines(std::string("> 09 02 5|") + reply, "|", "\n")), "\r\n", "|"),
                  lines(note + "> 09 02 5|" + left + "|", "||", "|"));
    EXPECT_EQ(withoutIdentity("> 0904\r\n7E8 22 42 31 32 33 34 35 36\r\n"),
              "> 0904\r\n7E8 22 42 31 32 33 34 35 36\r\n");
    const auto mask = identityMask(); // an answer behind the next command, and that to a repetition
    for (const char* command : {"> 0902\r\n", "> ATE0\r\n", "> \\x0D\\\r\n"}) {
        mask(command);
        EXPECT_EQ(mask("7E8 22 42 31 32 33 34 35 36\r\n"), "7E8 22 42 30 30 30 30 30 30\r\n") << command;
        EXPECT_EQ(mask(">\r\n").find('#'), std::string::npos);
        if (command[3] == '9')
            mask("> 0902\r\n");
    }
}

/// A port of a transcript, and what it delivers until nothing more comes.
struct Replay {
    ManualTimer timer;
    ReplayPort port;
    std::string groups; ///< with their waits in ms: "5:OK\r|"

    explicit Replay(const std::string& path, ReplayPort::Pace pace = ReplayPort::Pace::atOnce)
        : port(timer, path, pace)
    {
        port.onNotice = [this](PortNotice) { groups += port.input() + "|"; };
    }

    std::string ask(const std::string& text)
    {
        groups.clear();
        port.output(text);
        while (timer.running) {
            groups += timer.interval == 0ms ? "" : std::to_string(timer.interval.count()) + ":";
            timer.tick();
        }
        return groups;
    }
};

TEST(ReplayPortTest, AnswersAsRecorded)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("car.txt");
    TemporaryFolder::write(path,
                           "# opened com1\n# 0.000 s\n> ATZ\n# 0.840 s\nATZ\n\n\nELM327 v1.5\n\n>\n> 010D\n"
                           "# 1.000 s\n41 0D 01\n# 1.250 s\n\n>\n> 01 0d\nNO DATA\n\n>\n> ATD\n# closed\n"
                           "# opened com1\n> ATZ\nsecond\n\n>\n> ATD\nOK\n\n>\n> 0100\nSEARCHING...\n");
    Replay replay(path);
    replay.port.open(PortNumber{1}, 9600);
    EXPECT_EQ(replay.ask("atz\r"), "ATZ\r|\r\rELM327 v1.5\r|\r>|");
    EXPECT_EQ(replay.ask("010C\r"), "010C\r|NO DATA\r|\r>|") << "the echo is on";
    EXPECT_EQ(replay.ask("010D\r"), "41 0D 01\r|\r>|");
    EXPECT_EQ(replay.ask("010D\r"), "NO DATA\r|\r>|");
    EXPECT_EQ(replay.ask("01 0D\r"), "NO DATA\r|\r>|") << "the last one again";
    EXPECT_EQ(replay.ask("ATST 32\r") + replay.ask("hello\r"), "?\r|\r>|?\r|\r>|");
    EXPECT_EQ(replay.ask("ATD\r"), "OK\r|\r>|") << "of another exchange; to the first one nobody has waited";
    EXPECT_EQ(replay.ask("AT") + replay.ask("I\rATI\r"), "?\r|\r>|?\r|\r>|");
    replay.port.output("010D\r");
    replay.port.close();
    EXPECT_FALSE(replay.timer.running);
    replay.port.open(PortNumber{1}, 9600);
    EXPECT_EQ(replay.ask("ATZ\r"), "second\r|\r>|");
    EXPECT_EQ(replay.ask("0100\r"), "SEARCHING...\r|") << "and no prompt ever";
    Replay timed(path, ReplayPort::Pace::asRecorded);
    timed.port.open(PortNumber{1}, 9600);
    EXPECT_EQ(timed.ask("ATZ\r"), "840:ATZ\r|\r\rELM327 v1.5\r|\r>|");
    EXPECT_EQ(portLocation("Replay-Timed:/a b"),
              (PortLocation{.kind = PortLocation::Kind::recording, .path = "/a b", .isTimed = true}));
    EXPECT_EQ(timed.ask("010D\r"), "160:100:41 0D 01\r|150:\r>|");

    TemporaryFolder::write(path, "> 0902\n014\n0: 49 02 01 31 44 34\n");
    Replay written(path);
    written.port.open(PortNumber{1}, 9600);
    EXPECT_EQ(written.ask("0902\r"), "014\r|0: 49 02 01 31 44 34\r|\r>|") << "users leave the prompt out";
    TemporaryFolder::write(path, "no transcript");
    const auto failure = [&](const std::string& file) {
        return failureOf<CommError>([&] { Replay(file).port.open(PortNumber{1}, 9600); });
    };
    EXPECT_NE(failure(path).find("is no transcript"), std::string::npos);
    EXPECT_NE(failure(folder.path("none")).find("can't be read: No such file"), std::string::npos);
}

/// A recorded port with a scripted adapter behind it.
struct Recorder {
    ManualClock clock;
    WireRecord record;
    ScriptedAdapter* adapter = new ScriptedAdapter;
    RecordingPort port{std::unique_ptr<SerialPort>(adapter), record,
                       [](PortNumber number, int) { return portName(number); }};
    std::vector<PortNotice> notices;

    explicit Recorder(WireRecord::Limits limits = {}) : record(clock, identityMask, limits)
    {
        port.onNotice = [this](PortNotice notice) {
            notices.push_back(notice);
            port.input();
        };
    }

    void exchange(const std::string& command, const std::string& reply)
    {
        clock.now += 1500ms;
        adapter->expect(command).answer(reply);
        port.output(command);
        clock.now += 30ms;
        adapter->play();
    }

    std::string last() const { return record.lastExchange(WireRecord::Identity::kept); }
};

TEST(WireRecordTest, KeepsTheLastExchangeAndWritesAFileAsItComes)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("car.txt");
    Recorder recorder;
    EXPECT_FALSE(recorder.record.hasExchange());
    recorder.adapter->openError = CommError(13, "Permission denied");
    EXPECT_THROW(recorder.port.open(PortNumber{2}, 9600), CommError);
    EXPECT_NE(recorder.last().find(": not opened: com2: Permission denied\r\n"), std::string::npos);
    recorder.adapter->workAgain();
    recorder.port.open(PortNumber{1}, 9600);
    recorder.exchange("ATE0\r", "OK\r\r>");
    recorder.record.start(path, WireRecord::Identity::leftOut);
    const std::string begun = "# a transcript, begun on 1970-01-01 00:00:00 UTC\r\n";
    const std::string head = "# Zint " ZINT_TEST_VERSION ", 1970-01-01 00:00:00 UTC\r\n# opened com1\r\n";
    EXPECT_EQ(contents(path), begun + head);
    const std::string vin = "49 02 05 33 34 35 36 \r\r>";
    recorder.exchange("0902\r", vin);
    EXPECT_NE(contents(path).find("\r\n49 02 05 30 30 30 30 \r\n\r\n>\r\n"), std::string::npos);
    recorder.record.start(path, WireRecord::Identity::kept);
    recorder.exchange("0902\r", vin);
    const std::string exchange = "# 4.560 s\r\n> 0902\r\n# 4.590 s\r\n49 02 05 33 34 35 36 \r\n\r\n>\r\n";
    EXPECT_EQ(contents(path), begun + head + exchange);
    recorder.adapter->vanish();
    recorder.adapter->workAgain();
    EXPECT_EQ(recorder.notices.back(), PortNotice::deviceGone);
    recorder.port.close();
    recorder.port.open(PortNumber{1}, 9600);
    EXPECT_EQ(recorder.last().find(head), 0U);
    EXPECT_NE(recorder.last().find(exchange + "# 4.590 s\r\n# lost\r\n# 4.590 s\r\n# closed\r\n" + head),
              std::string::npos)
        << "a lost exchange goes on: " << recorder.last();
    EXPECT_EQ(recorder.record.lastExchange(WireRecord::Identity::leftOut).find("05 33 34"),
              std::string::npos);
    recorder.port.close();
    recorder.port.open(PortNumber{1}, 9600);
    EXPECT_EQ(recorder.last(), head) << "of a new one";
    recorder.record.stop();
    EXPECT_TRUE(contents(path).ends_with("# closed\r\n" + head));
}

TEST(WireRecordTest, IsBoundedAndTellsWhatTheSystemRefuses)
{
    const TemporaryFolder folder;
    Recorder recorder({.memory = 4000, .file = 12000});
    std::string ended;
    recorder.record.onEnded = [&](const std::string& why) { ended = why; };
#ifdef __unix__
    EXPECT_EQ(failureOf<FileError>([&] { recorder.record.start("/dev/full", WireRecord::Identity::kept); }),
              "\"/dev/full\" can't be written: No space left on device");
#endif
    EXPECT_NE(failureOf<FileError>([&] {
                  recorder.record.start(folder.path(), WireRecord::Identity::kept);
              }).find("Is a directory"),
              std::string::npos);
    const std::string path = folder.path("car.txt");
    recorder.record.start(path, WireRecord::Identity::kept);
    recorder.port.open(PortNumber{1}, 9600);
    for (int i = 0; i < 200; ++i)
        recorder.exchange("010D" + std::to_string(i) + "\r", "41 0D " + std::string(40, '0') + "\r\r>");
    EXPECT_EQ(ended, "\"" + path + "\" is large by now. The recording has ended.");
    EXPECT_EQ(recorder.record.path(), "");
    EXPECT_LT(contents(path).size(), 12300U);
    EXPECT_TRUE(contents(path).ends_with(">\r\n# the recording ends here: the file is large\r\n"));
    const std::string last = recorder.last();
    EXPECT_LT(last.size(), 4300U);
    EXPECT_NE(last.find("# opened com1\r\n# the exchange was long: its beginning is left out\r\n# "),
              std::string::npos)
        << last;
    EXPECT_TRUE(last.find("> 010D199\r\n") != std::string::npos && last.ends_with("\r\n\r\n>\r\n"));
}

} // namespace
} // namespace zint
