#include "designer/supportCheck.h"

#include "designer/supportReply.h"
#include "shared/module1.h"

namespace zint {

SupportCheck::SupportCheck(AdapterLine line, Prompts& prompts)
    : link_(std::move(line), *this), prompts_(prompts)
{
}

void SupportCheck::begin()
{
    if (link_.isOpen())
        return;
    if (link_.open(AdapterLink::Guard::exchange))
        link_.setStatus("Verify events with OBD2");
    onChanged();
}

void SupportCheck::close() { link_.close(); }

void SupportCheck::linkReady()
{
    link_.setStatus("Reading Data");
    link_.send("0100");
}

void SupportCheck::linkReply(std::string_view reply)
{
    const std::string data(isSupportReply(reply) ? supportData(reply) : "");
    const std::string bits = hexToBits(data);
    if (bits.empty())
        link_.countError();
    const std::string answer(reply); // which is valid while the port is open
    link_.close();
    onChanged();
    if (!bits.empty())
        link_.appendStatus(onAnswer(answer, bits));
    else if (isSupportReply(answer))
        prompts_.message("Garbled OBD2 0100 response (" + data + "), try again");
    else
        prompts_.message("Please try again, is possible ignition not ON");
}

void SupportCheck::linkReceived() { onChanged(); }

void SupportCheck::linkNotice(std::string_view text)
{
    link_.setStatus({});
    link_.appendStatus(text);
    onChanged();
}

void SupportCheck::linkTimedOut()
{
    prompts_.tellOfSilence(std::string(AdapterLink::notRespondingText), link_.timeoutReason());
    link_.close();
    onChanged();
}

void SupportCheck::linkLost() { onChanged(); }

} // namespace zint
