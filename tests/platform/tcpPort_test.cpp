#include "forms/formTest.h"
#include "platform/tcpPort.h"
#include "sim/loopbackServer.h"

#include <QElapsedTimer>
#include <QTcpSocket>

#include <cerrno>
#include <sys/socket.h>
#include <thread>

namespace zint {
namespace {

/// The port class for adapters in the network; the test is the adapter. What it shares with serial ports is
/// tested with those.
struct TcpPortTest : testing::Test {
    std::optional<LoopbackServer> server{std::in_place, 0};
    PortLocation place = at("127.0.0.1", server->port());
    EventGate gate;
    TcpPort port{gate, [this](PortNumber) { return place; }, std::chrono::milliseconds(150)};
    std::vector<PortNotice> notices;
    std::string received;

    TcpPortTest()
    {
        port.onNotice = [this](PortNotice notice) {
            notices.push_back(notice);
            received += port.input();
        };
    }

    static PortLocation at(const std::string& host, int number)
    {
        return portLocation("tcp:" + host + ":" + std::to_string(number));
    }

    /// @return whether the server has its client now
    bool open()
    {
        port.open(PortNumber{1}, 9600);
        return waitUntil([this] { return server->takeClient(); });
    }

    bool serverGets(const std::string& wanted)
    {
        std::string text;
        return waitUntil([&] { return (text += server->read()) == wanted; });
    }

    qint64 millisecondsToClose()
    {
        QElapsedTimer timer;
        timer.start();
        port.close();
        EXPECT_FALSE(port.isOpen());
        return timer.elapsed();
    }
};

TEST_F(TcpPortTest, CarriesTextBothWaysAndServesTheNextConversation)
{
    for (int round = 0; round < 2; ++round) {
        received.clear();
        ASSERT_TRUE(open());
        port.output("ATZ\r");
        EXPECT_TRUE(serverGets("ATZ\r"));
        gate.run([&] {
            server->write("\r\rX");
            server->write(" v1\r\r>");
            QTest::qWait(30);
            EXPECT_EQ(received, "") << "notifications wait for the handler that runs";
        });
        EXPECT_TRUE(waitUntil([&] { return received == "\r\rX v1\r\r>"; })) << received;
        EXPECT_LT(millisecondsToClose(), 200) << "all was answered";
        EXPECT_EQ(server->read(), "");
        EXPECT_FALSE(server->hasClient()) << "the next may come";
    }
}

TEST_F(TcpPortTest, ClosingInANotificationWaitsForALateAnswer)
{
    ASSERT_TRUE(open());
    qint64 time = -1;
    port.onNotice = [&](PortNotice) { // as tools do at the end of an exchange
        port.output("ATD\r");
        time = millisecondsToClose();
    };
    server->write("41 0C \r\r>");
    std::jthread adapter([&] {
        while (server->read().empty())
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        std::this_thread::sleep_for(std::chrono::milliseconds(60));
        server->write("OK\r\r>");
    });
    EXPECT_TRUE(waitUntil([&] { return time >= 0; }));
    EXPECT_TRUE(time >= 55 && time < 400) << time;
    adapter.join();

    port.onNotice = nullptr;
    EXPECT_EQ(server->read(), "");
    ASSERT_TRUE(open());
    port.output("ATD\r");
    time = millisecondsToClose(); // an adapter that does not answer
    EXPECT_TRUE(time >= 450 && time < 900) << time;
}

TEST_F(TcpPortTest, AnEndAndAResetAreTheLossOfTheDevice)
{
    for (const bool isReset : {false, true}) {
        notices.clear();
        received.clear();
        ASSERT_TRUE(open());
        server->write("41 0");
        QTest::qWait(30);
        EXPECT_TRUE(notices.empty());
        const linger hard{.l_onoff = isReset ? 1 : 0, .l_linger = 0};
        ASSERT_EQ(::setsockopt(server->descriptor(), SOL_SOCKET, SO_LINGER, &hard, sizeof hard), 0);
        server->endConnection();
        EXPECT_TRUE(waitUntil([&] { return notices.size() == 2; })) << isReset;
        QTest::qWait(20);
        EXPECT_EQ(notices, (std::vector{PortNotice::received, PortNotice::deviceGone})) << "told once";
        EXPECT_EQ(received, "41 0");
        EXPECT_THROW(port.output("ATD\r"), CommError);
        EXPECT_LT(millisecondsToClose(), 100);
    }
    ASSERT_TRUE(open());
    gate.run([&] { // it goes while a handler writes
        server->endConnection();
        for (int i = 0; i < 20; ++i) {
            QTest::qWait(1);
            try {
                port.output("010C\r");
            } catch (const CommError&) {
                break;
            }
        }
    });
    EXPECT_TRUE(waitUntil([&] { return notices.size() == 3; })) << "nobody is killed by a signal";
}

TEST_F(TcpPortTest, OpeningErrorsCarryTheSystemsNumberAndAdvice)
{
    const int free = LoopbackServer(0).port();
    std::array<QTcpSocket, 2> others; // as many as the adapter lets wait
    for (QTcpSocket& other : others) {
        other.connectToHost(u"127.0.0.1"_qs, static_cast<quint16>(server->port()));
        ASSERT_TRUE(other.waitForConnected(1000));
    }
    const std::tuple<PortLocation, int, const char*> rows[] = {
        {at("127.0.0.1", free), ECONNREFUSED, "look up the adapter's port"},
        {place, ETIMEDOUT, "join the adapter's Wi-Fi"},
        {at("no-such-host.invalid", 1), 0, "check the name"},
    };
    for (const auto& [location, number, advice] : rows) {
        place = location;
        int ticks = 0;
        QTimer clock;
        QObject::connect(&clock, &QTimer::timeout, &clock, [&ticks] { ++ticks; });
        clock.start(10);
        try {
            port.open(PortNumber{1}, 9600);
            ADD_FAILURE() << location.text() << " was opened";
        } catch (const CommError& error) {
            const std::string text = error.what();
            if (number == 0 && error.number() == ETIMEDOUT)
                continue; // a computer without a name server can't know
            EXPECT_EQ(error.number(), number) << text;
            EXPECT_NE(text.find(" (" + location.text() + ") - "), std::string::npos) << text;
            EXPECT_NE(text.find(advice), std::string::npos) << text;
        }
        EXPECT_FALSE(port.isOpen());
        EXPECT_TRUE(number != ETIMEDOUT || ticks > 5) << "windows stay painted";
    }
    EXPECT_TRUE(notices.empty());
    for (QTcpSocket& other : others)
        other.abort();
}

} // namespace
} // namespace zint
