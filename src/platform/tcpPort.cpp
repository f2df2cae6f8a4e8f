#include "platform/tcpPort.h"

#include "link/commError.h"
#include "platform/socketSystem.h"
#include "platform/text.h"

#include <QCursor>
#include <QEventLoop>
#include <QGuiApplication>
#include <QNetworkProxy>
#include <QTcpSocket>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace zint {
namespace {

struct Failure {
    QAbstractSocket::SocketError error;
    int number;       ///< the operating system's
    const char* text; ///< not every system has one for its number; null where the toolkit's tells more
    const char* advice;
};

constexpr std::array<Failure, 4> failures{{
    {QAbstractSocket::ConnectionRefusedError, ECONNREFUSED, "Connection refused",
     "look up the adapter's port, mostly 35000, else 3333 or 23; and let no phone and no other program use "
     "it: "
     "it serves one at a time"},
    {QAbstractSocket::SocketTimeoutError, ETIMEDOUT, "Connection timed out",
     "let this computer join the adapter's Wi-Fi, and see that the adapter has power"},
    {QAbstractSocket::NetworkError, ENETUNREACH, "Network is unreachable",
     "let this computer join the adapter's Wi-Fi"},
    {QAbstractSocket::HostNotFoundError, 0, nullptr,
     "check the name, or give the address, such as 192.168.0.10"},
}};

CommError connectionError(const PortLocation& place, QAbstractSocket::SocketError error,
                          const QString& description)
{
    const std::string at = " (" + place.text() + ")";
    const auto* const known = std::ranges::find(failures, error, &Failure::error);
    if (known == failures.end())
        return {EIO, fromQt(description) + at};
    const std::string what = known->text == nullptr ? fromQt(description) : known->text;
    return {known->number, what + at + " - " + known->advice};
}

/// The windows' mouse pointer while they take nothing from the user.
class WaitCursor {
public:
    WaitCursor()
    {
        if (hasWindows_)
            QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
    ~WaitCursor()
    {
        if (hasWindows_)
            QGuiApplication::restoreOverrideCursor();
    }

private:
    const bool hasWindows_ = qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
};

} // namespace

TcpPort::TcpPort(EventGate& gate, Locate locate, std::chrono::milliseconds patience)
    : TcpPort(gate, std::move(locate), patience, std::make_unique<QTcpSocket>())
{
}

TcpPort::TcpPort(EventGate& gate, Locate locate, std::chrono::milliseconds patience,
                 std::unique_ptr<QTcpSocket> socket)
    : DevicePort(gate, std::move(socket)), locate_(std::move(locate)), patience_(patience),
      socket_(static_cast<QTcpSocket&>(device()))
{
    socket_.setProxy(QNetworkProxy::NoProxy);
    QObject::connect(&socket_, &QAbstractSocket::disconnected, &socket_, [this] { lost(); });
}

void TcpPort::open(PortNumber number, int /*bitsPerSecond*/)
{
    connectTo(locate_(number));
    socket_.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    socket_.setSocketOption(QAbstractSocket::KeepAliveOption, 1);
    watchOver(socket_.socketDescriptor());
    begin(std::chrono::microseconds(0));
}

void TcpPort::connectTo(const PortLocation& place)
{
    QEventLoop loop;
    QObject::connect(&socket_, &QAbstractSocket::connected, &loop, &QEventLoop::quit);
    QObject::connect(&socket_, &QAbstractSocket::errorOccurred, &loop, &QEventLoop::quit);
    QTimer patience; // a single shot would outlive this, and the event loop look at it with each reply
    QObject::connect(&patience, &QTimer::timeout, &loop, &QEventLoop::quit);
    patience.start(patience_);
    const auto isTrying = [this] {
        return socket_.state() == QAbstractSocket::HostLookupState ||
               socket_.state() == QAbstractSocket::ConnectingState;
    };
    socket_.connectToHost(toQt(place.path), static_cast<quint16>(place.tcpPort));
    if (isTrying()) { // a refusal may be known at once
        const WaitCursor cursor;
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    }
    if (socket_.state() == QAbstractSocket::ConnectedState)
        return;
    const auto error = isTrying() ? QAbstractSocket::SocketTimeoutError : socket_.error();
    const CommError failure = connectionError(place, error, socket_.errorString());
    socket_.abort();
    throw failure;
}

std::size_t TcpPort::writeNow(std::string_view text) { return sendNow(socket_.socketDescriptor(), text); }

/// At once: the port may be opened again right after this.
void TcpPort::closeDevice()
{
    socket_.close();
    if (socket_.state() != QAbstractSocket::UnconnectedState)
        socket_.abort();
}

} // namespace zint
