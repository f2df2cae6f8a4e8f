#include "terminal/textReply.h"

#include "link/replyBuffer.h"
#include "shared/module1.h"
#include "terminal/numberText.h"

#include <charconv>
#include <cstdint>
#include <system_error>

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
        if (!literalReply_ && upperHexDigit(c) >= 0) {
            pendingDigits_ += c;
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

    void endNumber()
    {
        if (pendingDigits_.empty())
            return;
        std::int32_t value = 0;
        const char* const begin = pendingDigits_.data();
        if (std::from_chars(begin, begin + pendingDigits_.size(), value, 16).ec == std::errc())
            reply_.text += numberText(value, base_);
        else
            overflow();
        pendingDigits_.clear();
    }

    void overflow()
    {
        reply_.text += pendingDigits_;
        reply_.overflowed = literalReply_ = true;
    }

    NumberBase base_;
    TextReply reply_;
    std::string pendingDigits_; ///< of a number, as received
    bool literalReply_ = false; ///< the rest is shown as it is
};

} // namespace

TextReply showTextReply(std::string_view line, NumberBase base) { return Walk(base).show(line); }

} // namespace zint
