#include "platform/devicePort.h"

#include "link/commError.h"
#include "link/replyBuffer.h"
#include "platform/text.h"

#include <algorithm>
#include <cerrno>
#include <thread>

namespace zint {
namespace {

constexpr std::chrono::milliseconds driverMargin{10}; // what a USB adapter may hold back of a text

std::ptrdiff_t count(std::string_view text, char character) { return std::ranges::count(text, character); }

} // namespace

DevicePort::DevicePort(EventGate& gate, std::unique_ptr<QIODevice> device)
    : gate_(gate), device_(std::move(device))
{
    QObject::connect(device_.get(), &QIODevice::readyRead, &pause_, [this] { dataArrived(); });
    pause_.setSingleShot(true);
    QObject::connect(&pause_, &QTimer::timeout, &pause_, [this] { deliver(groups_.takeRest()); });
}

DevicePort::~DevicePort()
{
    device_->disconnect(); // it may close with signals, which nobody is there to take
}

void DevicePort::begin(std::chrono::microseconds timePerCharacter)
{
    isUsable_ = true;
    timePerCharacter_ = timePerCharacter;
    lineFreeAt_ = {};
    unanswered_ = 0;
}

void DevicePort::close()
{
    if (!isOpen())
        return;
    closing_ = true;
    finishConversation();
    closing_ = false;
    isUsable_ = false;
    closeDevice();
    pause_.stop();
    groups_.clear();
    arrived_.clear();
    received_.clear();
}

/// A program that opens the port right after this one must not find the answer to the last command there, and
/// a bridge or another program may keep the port's input until then.
void DevicePort::finishConversation()
{
    using std::chrono::duration_cast, std::chrono::milliseconds, std::chrono::steady_clock;
    const auto deadline = steady_clock::now() + closingPatience;
    const auto left = [deadline] {
        return static_cast<int>(duration_cast<milliseconds>(deadline - steady_clock::now()).count());
    };
    while (isUsable_ && device_->bytesToWrite() > 0 && left() > 0 && device_->waitForBytesWritten(left())) {
    }
    // The device tells of nothing while one of its own signals stands on the stack, as it mostly does here.
    takeArrived();
    while (isUsable_ && unanswered_ > 0 && left() > 0 && device_->waitForReadyRead(left()))
        takeArrived();
    // The system has the text now; closing resets the line's speed, so that it must be on the wire before.
    if (isUsable_)
        std::this_thread::sleep_until(std::min(lineFreeAt_, deadline));
}

void DevicePort::output(std::string_view text)
{
    if (!isUsable_)
        throw CommError(ENODEV, "The port is not open");
    if (timePerCharacter_.count() > 0) {
        const auto now = std::chrono::steady_clock::now();
        const auto characters = static_cast<int>(text.size());
        lineFreeAt_ = std::max(lineFreeAt_, now + driverMargin) + characters * timePerCharacter_;
    }
    const auto commands = count(text, '\r');
    if (device_->bytesToWrite() == 0)
        text.remove_prefix(writeNow(text));
    if (!text.empty() && device_->write(text.data(), static_cast<qint64>(text.size())) < 0)
        throw CommError(EIO, fromQt(device_->errorString()));
    unanswered_ += commands;
}

/// The device's signal does not come again while this runs, so that what arrives meanwhile is looked for
/// here.
void DevicePort::dataArrived()
{
    do {
        takeArrived();
    } while (isOpen() && device_->bytesAvailable() > 0);
}

void DevicePort::takeArrived()
{
    const QByteArray bytes = device_->readAll();
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
void DevicePort::deliver(std::string group)
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

void DevicePort::lost()
{
    if (!isUsable_)
        return;
    isUsable_ = false;
    if (closing_)
        return;
    if (!groups_.isEmpty()) // nothing will complete it
        deliver(groups_.takeRest());
    gate_.run([this] {
        if (!isUsable_) // else the port was opened again
            notify(PortNotice::deviceGone);
    });
}

void DevicePort::notify(PortNotice notice)
{
    if (isOpen() && onNotice)
        onNotice(notice);
}

} // namespace zint
