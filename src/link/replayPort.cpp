#include "link/replayPort.h"

#include "link/commError.h"
#include "shared/textFile.h"

#include <cerrno>

namespace zint {

ReplayPort::ReplayPort(Timer& timer, std::string path, Pace pace)
    : timer_(timer), path_(std::move(path)), pace_(pace)
{
    timer_.onTick = [this] { deliver(); };
}

ReplayPort::~ReplayPort()
{
    timer_.setEnabled(false);
    timer_.onTick = nullptr;
}

void ReplayPort::load()
{
    try {
        recording_.emplace(contentOf(path_));
    } catch (const FileError& error) {
        throw CommError(ENOENT, error.what());
    }
    if (recording_->isEmpty()) {
        recording_.reset();
        throw CommError(EINVAL,
                        "\"" + path_ +
                            "\" is no transcript: it has no line such as \"> 0902\", which tells what "
                            "was sent");
    }
}

void ReplayPort::open(PortNumber /*number*/, int /*bitsPerSecond*/)
{
    if (isOpen_)
        throw CommError(EBUSY, "The port is already open");
    if (!recording_)
        load();
    recording_->open();
    isOpen_ = true;
}

void ReplayPort::close()
{
    timer_.setEnabled(false);
    due_.clear();
    groups_.clear();
    group_.reset();
    received_.clear();
    isOpen_ = false;
}

void ReplayPort::output(std::string_view text)
{
    if (!isOpen_)
        throw CommError(EBADF, "The port is not open");
    for (Recording::Piece& piece : recording_->answer(text))
        due_.push_back(std::move(piece));
    if (!timer_.enabled())
        schedule();
}

/// Sets the timer to the next delivery.
void ReplayPort::schedule()
{
    using std::chrono::milliseconds;
    const bool waits = !group_ && (!due_.empty() || groups_.hasLine());
    timer_.setEnabled(false);
    if (!isOpen_ || (!group_ && !waits))
        return;
    timer_.setInterval(waits && pace_ == Pace::asRecorded
                           ? (endsLine() ? ReceiveGroups::patience : due_.front().wait)
                           : milliseconds(0));
    timer_.setEnabled(true);
}

/// Whether a line has waited long enough for what may belong to it before that comes.
bool ReplayPort::endsLine() const
{
    const bool isLate =
        due_.empty() || (pace_ == Pace::asRecorded && due_.front().wait > ReceiveGroups::patience);
    return isLate && groups_.hasLine();
}

/// The group that is complete by now.
std::optional<std::string> ReplayPort::nextGroup()
{
    if (group_)
        return std::exchange(group_, std::nullopt);
    if (endsLine()) {
        if (!due_.empty())
            due_.front().wait -= ReceiveGroups::patience;
        return groups_.takeRest();
    }
    if (due_.empty())
        return std::nullopt;
    groups_.append(due_.front().bytes);
    due_.pop_front();
    return groups_.take();
}

/// What the owner does in the notification (write, close, run an event loop) finds the port in order.
void ReplayPort::deliver()
{
    if (!isOpen_)
        return;
    const auto group = nextGroup();
    received_ += group.value_or("");
    group_ = groups_.take();
    schedule();
    if (group && onNotice)
        onNotice(PortNotice::received);
}

} // namespace zint
