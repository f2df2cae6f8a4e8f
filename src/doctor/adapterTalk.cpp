#include "doctor/adapterTalk.h"

#include "link/commError.h"
#include "link/replyBuffer.h"
#include "shared/module1.h"

#include <algorithm>
#include <utility>

namespace zint {
namespace {

bool endsWithPrompt(std::string_view text)
{
    const auto last = text.find_last_not_of(ReplyBuffer::filler);
    return last != std::string_view::npos && text[last] == ReplyBuffer::prompt;
}

} // namespace

AdapterTalk::AdapterTalk(SerialPort& port, Timer& timer, const Clock& clock)
    : port_(port), timer_(timer), clock_(clock)
{
    port_.onNotice = [this](PortNotice notice) { takeNotice(notice); };
    timer_.onTick = [this] { finish(false); };
}

void AdapterTalk::open(PortNumber number, int bitsPerSecond)
{
    close();
    try {
        port_.open(number, bitsPerSecond);
    } catch (const CommError&) {
        port_.close();
        throw;
    }
}

void AdapterTalk::close()
{
    take_ = {};
    timer_.setEnabled(false);
    port_.close();
}

void AdapterTalk::ask(std::string_view command, std::chrono::milliseconds limit, Take take)
{
    write(std::string(command) + '\r', limit, std::move(take));
}

void AdapterTalk::interrupt(std::string_view text, std::chrono::milliseconds limit, Take take)
{
    write(text, limit, std::move(take));
}

void AdapterTalk::write(std::string_view text, std::chrono::milliseconds limit, Take take)
{
    take_ = std::move(take);
    received_.clear();
    sentAt_ = clock_.monotonic();
    timer_.setInterval(limit);
    timer_.setEnabled(true);
    try {
        port_.output(text);
    } catch (const CommError&) { // NOLINT(bugprone-empty-catch): the notice comes, or the time is over
    }
}

void AdapterTalk::takeNotice(PortNotice notice)
{
    if (notice == PortNotice::deviceGone) {
        finish(true);
        return;
    }
    if (notice != PortNotice::received)
        return;
    received_ += port_.input();
    std::erase(received_, '\0');
    if (endsWithPrompt(received_))
        finish(false);
}

void AdapterTalk::finish(bool isGone)
{
    timer_.setEnabled(false);
    const Take take = std::exchange(take_, {});
    if (!take)
        return;
    const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(clock_.monotonic() - sentAt_);
    const bool isComplete = !isGone && endsWithPrompt(received_);
    take({.text = std::exchange(received_, {}), .isComplete = isComplete, .isGone = isGone, .took = took});
}

std::string coreOf(std::string_view command, std::string_view answer)
{
    std::string core;
    bool isFirst = true;
    for (const std::string_view line : replyLines(answer)) {
        const std::string_view text = trimmed(line);
        if (!text.empty() && !(std::exchange(isFirst, false) && upperCase(text) == command))
            core += (core.empty() ? "" : " | ") + std::string(text);
    }
    return core;
}

} // namespace zint
