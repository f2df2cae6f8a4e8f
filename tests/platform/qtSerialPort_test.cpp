#include "forms/formTest.h"
#include "platform/qtSerialPort.h"
#include "sim/pseudoTerminal.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryFile>

#include <cerrno>
#include <thread>
#include <unistd.h>

namespace zint {
namespace {

/// The real port class on a pseudo-terminal; the test is the adapter.
struct QtSerialPortTest : testing::Test {
    std::optional<PseudoTerminal> terminal{std::in_place};
    std::string location = terminal->path();
    EventGate gate;
    QtSerialPort port{gate, [this](PortNumber) { return location; }};
    std::vector<PortNotice> notices;
    std::string received;

    QtSerialPortTest()
    {
        port.onNotice = [this](PortNotice notice) {
            notices.push_back(notice);
            received += port.input();
        };
    }

    void open() { port.open(PortNumber{1}, 9600); }

    qint64 millisecondsToClose()
    {
        QElapsedTimer timer;
        timer.start();
        port.close();
        EXPECT_FALSE(port.isOpen());
        return timer.elapsed();
    }
};

TEST_F(QtSerialPortTest, CarriesTextBothWaysAndNotificationsWaitForTheHandlerThatRuns)
{
    open();
    EXPECT_TRUE(terminal->takeOpening());
    port.output("ATZ\r");
    EXPECT_EQ(terminal->read(), "ATZ\r") << "a write waits for nothing";
    gate.run([&] {
        terminal->write("41 0");
        QTest::qWait(30);
        terminal->write("C \r>");
        QTest::qWait(30);
        EXPECT_TRUE(notices.empty());
    });
    EXPECT_EQ(notices, std::vector{PortNotice::received}) << "one notification for all that came meanwhile";
    EXPECT_EQ(received, "41 0C \r>");
    terminal->write("A\r"); // for which the prompt may still come
    EXPECT_TRUE(waitUntil([&] { return received.ends_with("A\r"); }));
    gate.run([&] {
        terminal->write("B\r\rC");
        QTest::qWait(30);
        port.close();
    });
    EXPECT_EQ(notices.size(), 2U) << "none after closing";
    open();
    terminal->write("D\r>");
    EXPECT_TRUE(waitUntil([&] { return notices.size() == 3; }));
    EXPECT_EQ(received, "41 0C \r>A\rD\r>") << "nothing of what had come before";
    port.onNotice = [&](PortNotice) {
        received = port.input();
        if (received == "E\r>")
            terminal->write("F\r>");
        QTest::qWait(30); // as under a message box, which the notification opens
    };
    terminal->write("E\r>");
    EXPECT_TRUE(waitUntil([&] { return received == "F\r>"; }));
}

TEST_F(QtSerialPortTest, ClosingWaitsForTheAnswersToWhatWasWritten)
{
    terminal->holdOpen();
    terminal->takeOpening();
    terminal->write("41 0C \r\r>"); // left by another program
    open();
    port.output("010C\r");
    port.output("ATD\r");
    std::jthread adapter([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        terminal->write("STOPPED\r\r>");
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        terminal->write("OK\r\r>");
    });
    qint64 time = millisecondsToClose();
    EXPECT_TRUE(time >= 65 && time < 400) << time;
    adapter.join();
    EXPECT_EQ(terminal->read(), "010C\rATD\r");
    open();
    QTest::qWait(30);
    EXPECT_TRUE(notices.empty()) << "nothing of former conversations is left";

    port.output("ATD\r");
    time = millisecondsToClose(); // an adapter that does not answer
    EXPECT_TRUE(time >= 450 && time < 900) << time;
    EXPECT_EQ(terminal->read(), "ATD\r");
}

TEST_F(QtSerialPortTest, ClosingInANotificationWaitsForTheAnswerOnly)
{
    for (const int pause : {0, 50}) { // before it closes, as under a message box
        open();
        terminal->takeOpening();
        qint64 time = -1;
        port.onNotice = [&](PortNotice) { // as tools do at the end of an exchange
            port.output("ATD\r");
            if (pause > 0)
                QTest::qWait(pause);
            time = millisecondsToClose();
        };
        terminal->write("41 0C \r\r>");
        std::jthread adapter([&] {
            while (terminal->read().empty())
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            terminal->write("OK\r\r>");
        });
        EXPECT_TRUE(waitUntil([&] { return time >= 0; }));
        EXPECT_LT(time, 400) << pause;
    }
}

TEST_F(QtSerialPortTest, DeliversNoiseAndOnceTheDeviceIsGoneWhatIsIncomplete)
{
    open();
    terminal->takeOpening();
    terminal->write("\xFE\xFF"); // a wrong speed
    EXPECT_TRUE(waitUntil([&] { return received == "\xFE\xFF"; }));
    notices.clear();
    terminal->write("41 0");
    QTest::qWait(150);
    EXPECT_TRUE(notices.empty());
    received.clear();
    terminal.reset();
    EXPECT_TRUE(waitUntil([&] { return notices.size() == 2; }));
    EXPECT_EQ(received, "41 0");
    QTest::qWait(50);
    EXPECT_EQ(notices, (std::vector{PortNotice::received, PortNotice::deviceGone})) << "told once";
    EXPECT_THROW(port.output("ATD\r"), CommError);
    port.close();

    terminal.emplace(); // it is back
    location = terminal->path();
    open();
    port.output("x");
    EXPECT_EQ(terminal->read(), "x");
}

TEST_F(QtSerialPortTest, ClosingDoesNotWaitForEverForAnAdapterThatReadsNothing)
{
    open();
    for (int i = 0; i < 100; ++i)
        port.output(std::string(1000, 'x')); // more than the terminal takes
    QTest::qWait(20);
    EXPECT_TRUE(notices.empty()) << "a line that is busy is not gone";
    EXPECT_LT(millisecondsToClose(), 900);
}

TEST_F(QtSerialPortTest, TakesARelativePathFromTheWorkingFolder)
{
    const QString before = QDir::currentPath();
    ASSERT_TRUE(location.starts_with("/dev/") && QDir::setCurrent(u"/dev"_qs));
    location.replace(0, 4, ".");
    EXPECT_NO_THROW(open());
    QDir::setCurrent(before);
}

TEST_F(QtSerialPortTest, OpeningErrorsCarryTheSystemsNumberAndAdvice)
{
    QtSerialPort holder(gate, [path = location](PortNumber) { return path; });
    holder.open(PortNumber{1}, 9600);
    QTemporaryFile forbidden;
    forbidden.open();
    forbidden.setPermissions({});
    const bool isRoot = ::geteuid() == 0; // who may open everything
    const std::tuple<std::string, int, const char*> rows[] = {
        {"", ENODEV, ""},
        {"/dev/no-such-port", ENOENT, "the adapter is not connected"},
        {location, EBUSY, "another program holds it"},
        {forbidden.fileName().toStdString(), isRoot ? ENOTTY : EACCES,
         isRoot ? "" : "whose members may use it"},
    };
    for (const auto& [path, number, advice] : rows) {
        location = path;
        try {
            open();
            ADD_FAILURE() << path << " was opened";
        } catch (const CommError& error) {
            EXPECT_EQ(error.number(), number) << path << error.what();
            EXPECT_NE(std::string(error.what()).find(advice), std::string::npos) << error.what();
        }
    }
}

} // namespace
} // namespace zint
