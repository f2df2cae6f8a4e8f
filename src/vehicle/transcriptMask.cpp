#include "vehicle/transcriptMask.h"

#include "link/replyBuffer.h"
#include "link/transcriptText.h"
#include "shared/module1.h"
#include "shared/textFile.h"
#include "vehicle/busFrames.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace zint {
namespace {

/// A request for the VIN, and what its answer begins with: three bytes in front of the VIN on CAN.
struct VinRequest {
    std::string_view command;
    std::string_view answer;
};
constexpr std::array vinRequests = {VinRequest{"0902", "4902"}, VinRequest{"22F190", "62F190"}};

constexpr int vinLength = 17;
constexpr int serialStart = 11; // of the characters that are left out
constexpr int bytesInFront = 3;
constexpr int bytesInFurtherFrame = 7; // CAN
constexpr int bytesInOlderMessage = 4;
constexpr std::size_t frameDigits = 16;          // digits
constexpr std::string_view wholeAnswer = "1014"; // a first frame of CAN, with the length of 20 bytes
constexpr std::string_view maskedDigits = "30";  // the character 0
constexpr std::string_view repetition =
    "\\X0D\\"; // a line end alone: the adapter does its last command again

/// The digits of a line of a reply, and where they stand in it.
struct Digits {
    std::string text;
    std::vector<std::size_t> places;

    void drop(std::size_t count)
    {
        text.erase(0, count);
        places.erase(places.begin(), places.begin() + static_cast<std::ptrdiff_t>(count));
    }
};

Digits digitsIn(std::string_view line)
{
    Digits digits;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const bool isDamaged = line.substr(i).starts_with("\\x"); // a digit was there
        if (line[i] == '\\' && !isDamaged)                        // a line end
            break;
        if (line[i] == ' ')
            continue;
        digits.text += isDamaged ? '?' : line[i];
        digits.places.push_back(i);
        i += isDamaged ? 3 : 0;
    }
    digits.text = upperCase(digits.text);
    return digits;
}

int digitAt(std::string_view text, std::size_t place)
{
    return place < text.size() ? upperHexDigit(text[place]) : -1;
}

/// Which characters of the VIN a line has: the digits from `start` on stand for the bytes from number `first`
/// of the VIN on.
struct VinPart {
    std::size_t start = 0;
    int first = 0;
};

/// Finds the VIN in the lines of one reply.
class VinFinder {
public:
    explicit VinFinder(const VinRequest& request) : request_(request) {}

    /// @param digits of a line; the index of a numbered one is dropped
    std::optional<VinPart> partIn(Digits& digits)
    {
        if (digits.text.size() > 2 && digits.text[1] == ':') {
            const int number = digitAt(digits.text, 0);
            digits.drop(2);
            return VinPart{0, number < 0 ? serialStart : firstOf(number)};
        }
        const std::size_t answer = digits.text.find(request_.answer);
        if (answer != std::string::npos)
            return partBehind(digits.text, answer);
        return furtherPart(digits.text);
    }

    /// Whether a line without a known part may be one that was damaged: what it tells is no refusal, and it
    /// has not the form of a frame.
    bool mayBeDamaged(const Digits& digits) const
    {
        constexpr std::size_t shortest = 8; // a number of bytes has fewer
        const std::string refusal = "7F" + std::string(request_.command.substr(0, 2));
        const auto isNoDigit = [](char c) { return c != '?' && upperHexDigit(c) < 0; };
        return digits.text.size() >= shortest && std::ranges::none_of(digits.text, isNoDigit) &&
               digits.text.find(refusal) == std::string::npos && !usualHeader(digits.text.size());
    }

    /// Whether the line of the last part may end in a checksum.
    bool isOlder() const { return isOlder_; }

private:
    /// The first character in a numbered frame.
    static int firstOf(int number)
    {
        return number == 0 ? -bytesInFront
                           : bytesInFurtherFrame - bytesInOlderMessage + bytesInFurtherFrame * (number - 1);
    }

    VinPart partBehind(std::string_view digits, std::size_t answer)
    {
        const std::size_t front = wholeAnswer.size();
        const bool isFirst = answer >= front && digits.substr(answer - front, front) == wholeAnswer;
        constexpr std::size_t digitsInFront = std::size_t{2} * bytesInFront;
        constexpr std::size_t vinDigits = std::size_t{2} * vinLength;
        const bool isLong = digits.size() - answer >= digitsInFront + vinDigits;
        if (isFirst)
            header_ = answer - front;
        isOlder_ = !isFirst;
        const int number = digitAt(digits, answer + request_.answer.size() + 1);
        const bool isNumbered = number > 0 && bytesInOlderMessage * (number - 1) < bytesInFront + vinLength;
        const int first = isFirst || isLong ? 0
                          : isNumbered      ? bytesInOlderMessage * (number - 1) - bytesInFront
                                            : serialStart;
        return {answer + digitsInFront, first};
    }

    /// A further frame of CAN.
    std::optional<VinPart> furtherPart(std::string_view digits) const
    {
        const auto header =
            header_ && digits.size() == *header_ + frameDigits ? header_ : usualHeader(digits.size());
        if (!header || digitAt(digits, *header) != 2)
            return std::nullopt;
        return VinPart{*header + 2, firstOf(digitAt(digits, *header + 1))};
    }

    /// How many digits stand in front of a frame: an identifier, perhaps with the number of bytes behind it.
    static std::optional<std::size_t> usualHeader(std::size_t digits)
    {
        constexpr std::array<std::size_t, 5> known = {0, 3, 4, 8, 9};
        const auto* const found = std::ranges::find(known, digits - std::min(digits, frameDigits));
        return digits < frameDigits || found == known.end() ? std::nullopt : std::optional(*found);
    }

    const VinRequest& request_;
    std::optional<std::size_t> header_;
    bool isOlder_ = false;
};

Bytes bytesOf(std::string_view digits)
{
    Bytes bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes.push_back(static_cast<std::uint8_t>(hexIn(digits.substr(i, 2)).value_or(0)));
    return bytes;
}

/// Lets the checksum fit that fitted before. @return the digits with it
std::string withChecksum(std::string_view before, std::string after)
{
    const Bytes old = bytesOf(before);
    const Bytes fresh = bytesOf(after);
    for (const auto& check : {sumOf, crcOf}) {
        for (const std::size_t behind : {1U, 2U}) { // an acknowledgement may follow the checksum
            const std::size_t size = old.size() - std::min(old.size(), behind);
            if (size > 0 && check(BytesView(old).first(size)) == old[size])
                return after.replace(2 * size, 2, hexText(check(BytesView(fresh).first(size)), 2));
        }
    }
    return after;
}

std::string masked(std::string_view digits, const VinPart& part)
{
    std::string text(digits);
    for (int i = std::max(serialStart, part.first); i < vinLength; ++i) {
        const std::size_t place = part.start + 2 * static_cast<std::size_t>(i - part.first);
        if (place < text.size()) // half a byte where the device vanished
            text.replace(place, 2, maskedDigits.substr(0, text.size() - place));
    }
    return text;
}

/// Takes the lines of a transcript, one after the other.
class Masker {
public:
    void take(const TranscriptLine& line)
    {
        using LineKind = TranscriptLine::Kind;
        if (line.kind == LineKind::command)
            begin(line);
        if (line.kind == LineKind::reply && finder_)
            addReply(std::string(line.text));
        else
            add((line.kind == LineKind::comment   ? "#"
                 : line.kind == LineKind::command ? "> "
                                                  : "") +
                std::string(line.text));
    }

    /// What came out since the last call.
    std::string taken() { return std::exchange(text_, {}); }

private:
    void begin(const TranscriptLine& line)
    {
        const std::string command = compactCommand(line.text);
        const auto* const request = std::ranges::find_if(
            vinRequests, [&](const VinRequest& known) { return command.starts_with(known.command); });
        const bool isLate = finder_ && !isAnswered_; // the VIN may come behind the next command
        isAnswered_ = false;
        if (request == vinRequests.end()) {
            if (!isLate && command != repetition)
                finder_.reset();
            return;
        }
        finder_.emplace(*request);
        writeComment(text_, "the last six characters of the VIN are left out; its check digit may not fit");
    }

    void addReply(std::string line)
    {
        isAnswered_ = isAnswered_ || line.find(ReplyBuffer::prompt) != std::string::npos;
        Digits digits = digitsIn(line);
        const auto part = finder_->partIn(digits);
        std::string text = part ? masked(digits.text, *part) : digits.text;
        if (part && finder_->isOlder() && text != digits.text)
            text = withChecksum(digits.text, std::move(text));
        if (!part && finder_->mayBeDamaged(digits))
            text.replace(4, std::string::npos, text.size() - 4, maskedDigits.back());
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (digits.text[i] != '?')
                line[digits.places[i]] = text[i];
        }
        add(line);
    }

    void add(const std::string& line) { text_ += line + std::string(lineEnd); }

    std::string text_;
    /// While a reply with a VIN is read. A transcript without its beginning may start with one.
    std::optional<VinFinder> finder_{vinRequests.front()};
    bool isAnswered_ = true; ///< the prompt came
};

} // namespace

std::function<std::string(std::string_view)> identityMask()
{
    return [masker = Masker()](std::string_view lines) mutable {
        readTranscriptLines(lines, [&masker](const TranscriptLine& line) { masker.take(line); });
        return masker.taken();
    };
}

std::string withoutIdentity(std::string_view transcript) { return identityMask()(transcript); }

} // namespace zint
