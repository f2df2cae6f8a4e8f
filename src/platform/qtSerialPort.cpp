#include "platform/qtSerialPort.h"

#include "link/commError.h"
#include "link/replyBuffer.h"
#include "platform/serialSystem.h"
#include "platform/text.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace zint {
namespace {

constexpr std::chrono::milliseconds driverMargin{10}; // what a USB adapter may hold back of a text

constexpr int bitsPerCharacter = 10; // with start and stop bit

std::ptrdiff_t count(std::string_view text, char character) { return std::ranges::count(text, character); }

} // namespace

QtSerialPort::QtSerialPort(EventGate& gate, Locate locate) : gate_(gate), locate_(std::move(locate))
{
    QObject::connect(&port_, &QSerialPort::readyRead, &port_, [this] { dataArrived(); });
    QObject::connect(&port_, &QSerialPort::errorOccurred, &port_,
                     [this](QSerialPort::SerialPortError error) { errorArrived(error); });
    pause_.setSingleShot(true);
    QObject::connect(&pause_, &QTimer::timeout, &port_, [this] { deliver(groups_.takeRest()); });
}

void QtSerialPort::open(PortNumber number, int bitsPerSecond)
{
    const std::string location = locate_(number);
    if (location.empty())
        throw nothingConnected(number);
    const std::string path = devicePath(location);
    port_.setPortName(toQt(path));
    port_.setBaudRate(bitsPerSecond);
    port_.setDataBits(QSerialPort::Data8);
    port_.setParity(QSerialPort::NoParity);
    port_.setStopBits(QSerialPort::OneStop);
    port_.setFlowControl(QSerialPort::NoFlowControl);
    if (!port_.open(QIODevice::ReadWrite))
        throw portOpenError(path, port_.error(), port_.errorString());
    goneReported_ = true; // nobody is told from inside this call
    port_.clear(QSerialPort::Input);
    goneReported_ = false;
    timePerCharacter_ = std::chrono::microseconds(std::chrono::seconds(1)) * bitsPerCharacter / bitsPerSecond;
    lineFreeAt_ = {};
    unanswered_ = 0;
}

void QtSerialPort::close()
{
    if (!port_.isOpen())
        return;
    closing_ = true;
    finishConversation();
    closing_ = false;
    port_.close();
    pause_.stop();
    groups_.clear();
    arrived_.clear();
    received_.clear();
}

/// A program that opens the port right after this one must not find the answer to the last command there, and
/// a bridge or another program may keep the port's input until then.
void QtSerialPort::finishConversation()
{
    using std::chrono::duration_cast, std::chrono::milliseconds, std::chrono::steady_clock;
    const auto deadline = steady_clock::now() + closingPatience;
    const auto left = [deadline] {
        return static_cast<int>(duration_cast<milliseconds>(deadline - steady_clock::now()).count());
    };
    while (!goneReported_ && port_.bytesToWrite() > 0 && left() > 0 && port_.waitForBytesWritten(left())) {
    }
    // The port tells of nothing while one of its own signals stands on the stack, as it mostly does here.
    takeArrived();
    while (!goneReported_ && unanswered_ > 0 && left() > 0 && port_.waitForReadyRead(left()))
        takeArrived();
    // The system has the text now; closing resets the line's speed, so that it must be on the wire before.
    if (!goneReported_)
        std::this_thread::sleep_until(std::min(lineFreeAt_, deadline));
}

void QtSerialPort::output(std::string_view text)
{
    if (!port_.isOpen() || goneReported_)
        throw CommError(static_cast<int>(QSerialPort::NotOpenError), "The port is not open");
    const auto now = std::chrono::steady_clock::now();
    const auto characters = static_cast<int>(text.size());
    lineFreeAt_ = std::max(lineFreeAt_, now + driverMargin) + characters * timePerCharacter_;
    const auto commands = count(text, '\r');
    if (port_.bytesToWrite() == 0)
        text.remove_prefix(writeNow(port_, text));
    if (!text.empty() && port_.write(text.data(), static_cast<qint64>(text.size())) < 0)
        throw CommError(static_cast<int>(port_.error()), fromQt(port_.errorString()));
    unanswered_ += commands;
}

/// The port's signal does not come again while this runs, so that what arrives meanwhile is looked for here.
void QtSerialPort::dataArrived()
{
    do {
        takeArrived();
    } while (port_.isOpen() && port_.bytesAvailable() > 0);
}

void QtSerialPort::takeArrived()
{
    const QByteArray bytes = port_.readAll();
    const std::string_view text(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    unanswered_ = std::max<std::ptrdiff_t>(unanswered_ - count(text, ReplyBuffer::prompt), 0);
    // Whoever answers has got what was written; many adapters are faster than their line's speed says.
    lineFreeAt_ = {};
    if (closing_)
        return;
    groups_.append(text);
    pause_.stop();
    while (auto group = groups_.take())
        deliver(std::move(*group));
    if (groups_.hasLine())
        pause_.start(ReceiveGroups::patience);
}

/// Each group is a notification of its own.
void QtSerialPort::deliver(std::string group)
{
    arrived_.push_back(std::move(group));
    gate_.run([this] {
        if (arrived_.empty()) // the port was closed meanwhile
            return;
        received_ += arrived_.front();
        arrived_.pop_front();
        notify(PortNotice::received);
    });
}

void QtSerialPort::errorArrived(QSerialPort::SerialPortError error)
{
    if (error == QSerialPort::NoError || error == QSerialPort::TimeoutError || !port_.isOpen() ||
        goneReported_)
        return;
    // Whatever a driver calls it, a port that can't be read or written any more has lost its device.
    goneReported_ = true;
    if (closing_)
        return;
    if (!groups_.isEmpty()) // nothing will complete it
        deliver(groups_.takeRest());
    gate_.run([this] {
        if (goneReported_) // else the port was opened again
            notify(PortNotice::deviceGone);
    });
}

void QtSerialPort::notify(PortNotice notice)
{
    if (port_.isOpen() && onNotice)
        onNotice(notice);
}

} // namespace zint
