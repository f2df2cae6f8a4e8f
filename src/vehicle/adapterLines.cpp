#include "vehicle/adapterLines.h"

#include "link/replyBuffer.h"
#include "shared/module1.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace zint {
namespace {

struct ErrorText {
    std::string_view letters; ///< of a part of the line, without blanks, dots and colons
    ReplyError error;
};

// Adapters differ in blanks, dots and colons. The first row that fits counts.
constexpr std::array errorTexts = {
    ErrorText{"BUSINITERR", ReplyError::busInitError},
    ErrorText{"UNABLETOCONNECT", ReplyError::unableToConnect},
    ErrorText{"DATAERR", ReplyError::dataError},
    ErrorText{"RXERR", ReplyError::rxError},
    ErrorText{"CANERR", ReplyError::canError},
    ErrorText{"ERR94", ReplyError::canError}, // the adapter cannot start its CAN part
    ErrorText{"BUSBUSY", ReplyError::busError},
    ErrorText{"BUSERR", ReplyError::busError},
    ErrorText{"FBERR", ReplyError::busError},
    ErrorText{"BUFFERFULL", ReplyError::bufferFull},
    ErrorText{"LVRESET", ReplyError::lowVoltageReset},
    ErrorText{"ACTALERT", ReplyError::activityAlert},
    ErrorText{"LPALERT", ReplyError::activityAlert},
    ErrorText{"STOPPED", ReplyError::stopped},
    ErrorText{"NODATA", ReplyError::noData},
};

constexpr std::string_view busInit = "BUSINIT";

bool isNoise(char character) { return character <= ' ' || character > '~'; }

/// Without blanks, control characters and bytes that are no text at both ends.
std::string_view withoutNoise(std::string_view text)
{
    while (!text.empty() && isNoise(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isNoise(text.back()))
        text.remove_suffix(1);
    return text;
}

int digitValue(char character)
{
    if (character >= 'a' && character <= 'f')
        return character - 'a' + 10;
    return upperHexDigit(character);
}

/// Takes the word from the front of the text, in either case and with blanks between its letters.
bool takeWord(std::string_view& text, std::string_view word)
{
    std::size_t place = 0;
    for (const char letter : word) {
        while (place < text.size() && text[place] == ' ')
            ++place;
        if (place == text.size() || (text[place] & ~0x20) != letter)
            return false;
        ++place;
    }
    text.remove_prefix(place);
    return true;
}

/// What stands behind the words that tell of progress: some adapters put data into the same line.
std::string_view withoutProgress(std::string_view text)
{
    bool isTaken = true;
    while (isTaken) {
        isTaken = false;
        for (const std::string_view word : {std::string_view("SEARCHING"), busInit, std::string_view("OK")})
            isTaken = takeWord(text, word) || isTaken;
        text.remove_prefix(std::min(text.find_first_not_of(" .:"), text.size()));
    }
    return text;
}

std::string lettersOf(std::string_view text)
{
    std::string letters = upperCase(text);
    std::erase_if(letters, [](char c) { return isNoise(c) || c == '.' || c == ':'; });
    return letters;
}

/// "ERR94" and its like: the adapter's own faults with the bus.
bool isNumberedError(std::string_view letters)
{
    return letters.size() > 3 && letters.starts_with("ERR") && letters[3] >= '0' && letters[3] <= '9';
}

ReplyError errorIn(const std::string& letters, bool isBehindBusInit)
{
    if (!letters.empty() && letters.find_first_not_of('?') == std::string_view::npos)
        return ReplyError::unknownCommand;
    for (const auto& [part, error] : errorTexts) {
        if (letters.find(part) != std::string_view::npos)
            return error;
    }
    if (letters == "ERROR" && isBehindBusInit)
        return ReplyError::busInitError;
    return letters == "ERROR" || isNumberedError(letters) ? ReplyError::busError : ReplyError::none;
}

/// Puts a reply's lines together, one after the other.
class ReplyLineReader {
public:
    void read(std::string_view line)
    {
        line = withoutNoise(line);
        if (!line.empty() && !takeHex(line))
            readText(line);
    }

    AdapterLines result;

private:
    bool takeHex(std::string_view text)
    {
        std::optional<HexLine> line = hexLine(text);
        const bool isHex = line.has_value();
        if (isHex)
            result.lines.push_back(*std::move(line));
        return isHex;
    }

    void readText(std::string_view text)
    {
        const std::string letters = lettersOf(text);
        const ReplyError error = errorIn(letters, isBehindBusInit_);
        isBehindBusInit_ = isBehindBusInit_ || letters.starts_with(busInit);
        if (result.textError == ReplyError::none)
            result.textError = error;
        if (error != ReplyError::none)
            return;
        const std::string_view rest = withoutProgress(text);
        result.isAcknowledged = letters == "OK" && !result.tellsProgress;
        result.tellsProgress = result.tellsProgress || (rest.empty() && letters != "OK");
        if (!rest.empty() && !takeHex(rest))
            result.isEmpty = false;
    }

    bool isBehindBusInit_ = false;
};

/// Whether the first line is the request, sent back; the adapter may add the number of answers that it waits
/// for. In front of a line with an index the same digits are a length.
bool beginsWithEcho(const std::vector<HexLine>& lines, const Bytes& request)
{
    if (lines.empty() || request.empty() || lines.front().index || (lines.size() > 1 && lines[1].index))
        return false;
    const Bytes& digits = lines.front().digits;
    return (digits.size() == request.size() || digits.size() == request.size() + 1) &&
           std::equal(request.begin(), request.end(), digits.begin());
}

} // namespace

Bytes HexLine::bytesFrom(std::size_t start) const
{
    Bytes bytes((digits.size() - std::min(start, digits.size())) / 2);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(digits[start + 2 * i] * 16 + digits[start + 2 * i + 1]);
    return bytes;
}

std::optional<HexLine> hexLine(std::string_view text)
{
    HexLine line;
    line.digits.reserve(text.size());
    for (const char character : text) {
        const int value = digitValue(character);
        if (value >= 0) {
            line.digits.push_back(static_cast<std::uint8_t>(value));
        } else if (character == ':' && line.digits.size() == 1 && !line.index) {
            line.index = line.digits.front();
            line.digits.clear();
        } else if (character == ' ' || character == '\t') {
            line.firstGroup = line.firstGroup == 0 ? line.digits.size() : line.firstGroup;
        } else if (character != '\0') {
            return std::nullopt;
        }
    }
    line.firstGroup = line.firstGroup == 0 ? line.digits.size() : line.firstGroup;
    return line.digits.empty() ? std::nullopt : std::optional(std::move(line));
}

AdapterLines adapterLines(std::string_view request, std::string_view reply)
{
    ReplyLineReader reader;
    for (const std::string_view line : replyLines(reply))
        reader.read(line);
    AdapterLines result = std::move(reader.result);
    if (const auto sent = hexLine(request); sent && beginsWithEcho(result.lines, sent->digits))
        result.lines.erase(result.lines.begin());
    result.isEmpty = result.isEmpty && result.lines.empty();
    const std::string_view shown = withoutNoise(reply);
    result.hasPrompt = !shown.empty() && shown.back() == '>';
    return result;
}

} // namespace zint
