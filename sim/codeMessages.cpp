#include "sim/codeMessages.h"

#include <charconv>
#include <stdexcept>
#include <utility>

namespace zint {
namespace {

/// The codes in one message, behind their count.
Messages countedCodes(std::uint8_t mode, const TroubleCodes& codes)
{
    Message message{positiveAnswer(mode), static_cast<std::uint8_t>(codes.size())};
    for (const std::uint16_t code : codes)
        appendNumber(message, code, 2);
    return {message};
}

/// The codes in short messages of three; zeros fill up the last one, which also tells that there are none.
Messages splitCodes(std::uint8_t mode, const TroubleCodes& codes)
{
    Messages messages;
    std::size_t next = 0;
    do {
        Message message{positiveAnswer(mode)};
        for (; next < codes.size() && message.size() < shortMessageBytes; ++next)
            appendNumber(message, codes[next], 2);
        message.resize(shortMessageBytes, 0);
        messages.push_back(std::move(message));
    } while (next < codes.size());
    return messages;
}

} // namespace

std::optional<std::uint16_t> troubleCodeBytes(std::string_view text)
{
    constexpr std::string_view systems = "PCBU";
    if (text.size() != 5)
        return {};
    const auto system = systems.find(text[0]);
    unsigned number = 0;
    const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), number, 16);
    if (system == std::string_view::npos || error != std::errc{} || end != text.data() + text.size() ||
        number > 0x3FFF)
        return {};
    return static_cast<std::uint16_t>(system << 14 | number);
}

TroubleCodes parseTroubleCodes(const std::vector<std::string>& texts)
{
    TroubleCodes codes;
    for (const std::string& text : texts) {
        const auto code = troubleCodeBytes(text);
        if (!code)
            throw std::invalid_argument("\"" + text + "\" is no trouble code");
        codes.push_back(*code);
    }
    return codes;
}

Messages codeMessages(std::uint8_t mode, const TroubleCodes& codes, Framing framing)
{
    return framing == Framing::isoTp ? countedCodes(mode, codes) : splitCodes(mode, codes);
}

} // namespace zint
