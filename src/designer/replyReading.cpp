#include "designer/replyReading.h"

#include "shared/module1.h"

#include <utility>

namespace zint {

ReplyReading::ReplyReading(AdapterLine line, Prompts& prompts)
    : link_(std::move(line), *this), prompts_(prompts)
{
}

void ReplyReading::begin(const OwnParameter& parameter)
{
    if (link_.isOpen())
        return;
    commands_ = commandsFor(parameter);
    if (link_.open(AdapterLink::Guard::exchange))
        link_.setStatus("Read " + parameter.request);
    onChanged();
}

void ReplyReading::close() { link_.close(); }

void ReplyReading::sendNext()
{
    link_.send(commands_.front());
    onChanged();
}

void ReplyReading::linkReply(std::string_view reply)
{
    const std::string answer(trimmed(reply, " \r\n>")); // the reply is valid while the port is open
    if (commands_.size() > 1 && answer != "OK") {
        tellRefused(answer);
        return;
    }
    commands_.pop_front();
    if (!commands_.empty()) {
        sendNext();
        return;
    }
    const std::string announced = link_.announcement();
    link_.close();
    onChanged();
    onReply(answer.empty() ? announced : answer);
}

void ReplyReading::tellRefused(std::string_view reply)
{
    const std::string command = commands_.front();
    link_.countError();
    link_.close();
    onChanged();
    prompts_.message("The adapter does not take " + command + " (" + std::string(reply) +
                     "). Check header and filter.");
}

void ReplyReading::linkNotice(std::string_view text)
{
    link_.setStatus({});
    link_.appendStatus(text);
    onChanged();
}

void ReplyReading::linkTimedOut()
{
    prompts_.tellOfSilence(std::string(AdapterLink::notRespondingText), link_.timeoutReason());
    link_.close();
    onChanged();
}

std::deque<std::string> commandsFor(const OwnParameter& parameter)
{
    constexpr std::size_t longHeader = 8; // digits, of 29 bits: the first two have a command of their own
    std::deque<std::string> commands;
    std::string header = parameter.header;
    if (header.size() == longHeader) {
        commands.push_back("ATCP " + header.substr(0, 2));
        header.erase(0, 2);
    }
    if (!header.empty())
        commands.push_back("ATSH " + header);
    if (!parameter.filter.empty())
        commands.push_back("ATCRA " + parameter.filter);
    commands.push_back(parameter.request);
    return commands;
}

} // namespace zint
