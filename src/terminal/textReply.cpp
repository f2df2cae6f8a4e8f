#include "terminal/textReply.h"

#include "link/replyBuffer.h"
#include "shared/module1.h"
#include "terminal/numberText.h"

#include <cstdint>
#include <limits>

namespace zint {
namespace {

/// Walks over a line.
class Walk {
public:
    explicit Walk(NumberBase base) : base_(base) {}

    TextReply show(std::string_view line)
    {
        for (const char c : line.substr(0, line.find('\r')))
            take(c);
        endNumber();
        return reply_;
    }

private:
    void take(char c)
    {
        if (const int digit = upperHexDigit(c); digit >= 0 && !literalReply_) {
            takeDigit(c, digit);
            return;
        }
        const bool isMark = c == '\n' || c == ReplyBuffer::prompt;
        if (!pendingDigits_.empty())
            endNumber();
        else if (c != ' ' && !isMark)
            literalReply_ = true;
        if (!isMark)
            reply_.text += c;
    }

    void takeDigit(char c, std::int32_t digit)
    {
        constexpr std::int32_t radix = 16;
        pendingDigits_ += c;
        if (pendingValue_ <= std::numeric_limits<std::int32_t>::max() / radix) {
            pendingValue_ = pendingValue_ * radix + digit;
            return;
        }
        reply_.overflowed = literalReply_ = true;
        reply_.text += pendingDigits_;
        pendingDigits_.clear();
    }

    void endNumber()
    {
        if (!pendingDigits_.empty())
            reply_.text += numberText(pendingValue_, base_);
        pendingDigits_.clear();
        pendingValue_ = 0;
    }

    NumberBase base_;
    TextReply reply_;
    std::int32_t pendingValue_ = 0;
    std::string pendingDigits_; ///< the number as received
    bool literalReply_ = false;
};

} // namespace

TextReply showTextReply(std::string_view line, NumberBase base) { return Walk(base).show(line); }

} // namespace zint
