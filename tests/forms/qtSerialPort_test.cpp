#include "forms/formTest.h"
#include "link/commError.h"
#include "platform/qtSerialPort.h"
#include "sim/pseudoTerminal.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <unistd.h>

namespace zint {
namespace {

/// The real port class on a pseudo-terminal; the test is the adapter.
class QtSerialPortTest : public testing::Test {
protected:
    QtSerialPortTest() { setUp(port); }

    void setUp(QtSerialPort& which)
    {
        which.setCommPort(1);
        which.setSettings("9600,N,8,1");
        which.setReceiveThreshold(1);
        which.onComm = [this, &which] { events.push_back(which.lastCommEvent()); };
    }

    void openPort()
    {
        port.open();
        EXPECT_TRUE(terminal->takeOpening());
    }

    /// Why what com1 stands for now can't be opened.
    CommError failureOf(const std::string& path)
    {
        location = path;
        try {
            port.open();
        } catch (const CommError& error) {
            EXPECT_FALSE(port.isOpen());
            return error;
        }
        return {0, "it opened"};
    }

    std::optional<PseudoTerminal> terminal{std::in_place};
    std::string location = terminal->path();
    EventGate gate;
    QtSerialPort port{gate, [this](int) { return location; }};
    std::vector<int> events;
};

TEST_F(QtSerialPortTest, CarriesTextBothWays)
{
    openPort();
    port.output("ATZ\r");
    EXPECT_EQ(terminal->read(), "ATZ\r") << "a write waits for nothing";
    terminal->write("41 0C \r>");
    ASSERT_TRUE(waitUntil([&] { return port.inBufferCount() == 8; }));
    EXPECT_EQ(events.front(), commEvent::receive);
    EXPECT_EQ(port.input(), "41 0C \r>");
    EXPECT_EQ(port.inBufferCount(), 0);
}

TEST_F(QtSerialPortTest, WhatWasWrittenBeforeClosingReachesTheWire)
{
    port.open();
    QElapsedTimer timer;
    timer.start();
    port.output("ATD\r");
    port.close();
    EXPECT_GE(timer.elapsed(), 4) << "four characters take four milliseconds at 9600 bits per second";
    EXPECT_LT(timer.elapsed(), 400);
    EXPECT_EQ(terminal->read(), "ATD\r");
}

TEST_F(QtSerialPortTest, ClosingDoesNotWaitForEverForAnAdapterThatReadsNothing)
{
    port.open();
    for (int i = 0; i < 100; ++i)
        port.output(std::string(1000, 'x')); // more than the terminal takes
    QElapsedTimer timer;
    timer.start();
    port.close();
    EXPECT_LT(timer.elapsed(), 1500);
    EXPECT_FALSE(port.isOpen());
}

TEST_F(QtSerialPortTest, NotificationsWaitForTheHandlerThatRuns)
{
    openPort();
    gate.run([&] {
        terminal->write("a");
        QTest::qWait(30);
        terminal->write("b");
        QTest::qWait(30);
        EXPECT_TRUE(events.empty());
    });
    EXPECT_EQ(events, std::vector<int>{commEvent::receive}) << "one notification for all that came meanwhile";
    EXPECT_EQ(port.input(), "ab");

    gate.run([&] {
        terminal->write("c");
        QTest::qWait(30);
        port.close();
    });
    EXPECT_EQ(events.size(), 1U) << "none after closing";
}

TEST_F(QtSerialPortTest, TellsOnceThatTheDeviceIsGone)
{
    port.open();
    terminal.reset();
    ASSERT_TRUE(waitUntil([&] { return !events.empty(); }));
    QTest::qWait(50);
    EXPECT_EQ(events, std::vector<int>{commEvent::deviceGone});
    port.output("ATD\r"); // taken by nobody
    port.close();
    EXPECT_FALSE(port.isOpen());

    terminal.emplace(); // it is back
    location = terminal->path();
    port.open();
    port.output("x");
    EXPECT_EQ(terminal->read(), "x");
}

TEST_F(QtSerialPortTest, OpeningErrorsCarryTheSystemsNumberAndAdvice)
{
    const QTemporaryDir folder;
    const QString plain = folder.filePath(QStringLiteral("plain"));
    QFile(plain).open(QIODevice::WriteOnly);

    EXPECT_EQ(failureOf("").number(), ENODEV);
    const CommError missing = failureOf("/dev/no-such-port");
    EXPECT_EQ(missing.number(), ENOENT);
    EXPECT_NE(std::string(missing.what()).find("the adapter is not connected"), std::string::npos);
    EXPECT_EQ(failureOf(plain.toStdString()).number(), ENOTTY);

    location = terminal->path();
    QtSerialPort holder(gate, [this](int) { return location; });
    setUp(holder);
    holder.open();
    const CommError busy = failureOf(location);
    EXPECT_EQ(busy.number(), EBUSY);
    EXPECT_NE(std::string(busy.what()).find("another program holds it"), std::string::npos);

    port.setSettings("fast,N,8,1");
    EXPECT_NE(std::string(failureOf(location).what()).find("fast,N,8,1"), std::string::npos);
}

TEST_F(QtSerialPortTest, PermissionDeniedNamesTheGroup)
{
    if (::geteuid() == 0)
        GTEST_SKIP() << "root may open everything";
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("port"));
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.setPermissions({});
    const CommError denied = failureOf(path.toStdString());
    EXPECT_EQ(denied.number(), EACCES);
    EXPECT_NE(std::string(denied.what()).find("whose members may use it"), std::string::npos);
}

} // namespace
} // namespace zint
