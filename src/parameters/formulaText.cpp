#include "parameters/formulaText.h"

#include "parameters/formulaFunctions.h"
#include "shared/module1.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <system_error>
#include <utility>
#include <vector>

namespace zint {
namespace {

constexpr std::size_t letterCount = 26;
constexpr std::size_t bitsOfByte = 8;

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::string inSmallLetters(std::string_view text)
{
    std::string small(text);
    for (char& c : small)
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    return small;
}

/// The index of the byte of a name in any case; nothing for other names.
std::optional<std::size_t> byteIndex(std::string_view name)
{
    std::size_t count = 0;
    for (const char c : upperCase(name)) {
        if (c < 'A' || c > 'Z' || count > FormulaText::mostBytes)
            return std::nullopt;
        count = letterCount * count + static_cast<std::size_t>(c - 'A' + 1);
    }
    return count == 0 || count > FormulaText::mostBytes ? std::nullopt : std::optional(count - 1);
}

/// Reads a typed formula part by part. A value and what may follow a value alternate.
class FormulaReader {
public:
    explicit FormulaReader(std::string_view typed) : typed_(typed) {}

    FormulaText read();

private:
    /// What is open: a parenthesis, one of a function, or a "?" that waits for its ":".
    struct Open {
        char kind;
        std::size_t position;
        const FormulaFunction* function = nullptr;
        std::size_t arguments = 1; ///< so far
    };

    bool skipBlanks();
    void takeValue();
    void takeMinus();
    void takeNumber();
    void takeName();
    void takeFunction(std::string_view name);
    void takeByte(std::string_view name);
    void takeBit();
    void takeOperator();
    void takeComma();
    void takeColon();
    void takeClosing();
    void open(char kind, const FormulaFunction* function = nullptr);
    void endValue(std::string_view text, std::size_t length);
    void take(std::string_view text, std::size_t length);
    void finish();
    void refuse(std::size_t position, std::string text);

    char current() const { return typed_[at_]; }
    std::string_view rest() const { return typed_.substr(at_); }
    bool isOpen(char kind) const { return !open_.empty() && open_.back().kind == kind; }

    std::string_view typed_;
    std::size_t at_ = 0;
    std::size_t signEnd_ = 0; ///< where the last sign ends in the result
    bool expectsValue_ = true;
    std::vector<Open> open_;
    FormulaText result_;
};

FormulaText FormulaReader::read()
{
    if (typed_.size() > FormulaText::longest)
        refuse(FormulaText::longest,
               "a formula has at most " + std::to_string(FormulaText::longest) + " characters");
    while (!result_.fault && skipBlanks())
        expectsValue_ ? takeValue() : takeOperator();
    if (!result_.fault)
        finish();
    return std::move(result_);
}

/// @return whether there is more
bool FormulaReader::skipBlanks()
{
    at_ = std::min(typed_.find_first_not_of(" \t\r\n", at_), typed_.size());
    return at_ < typed_.size();
}

void FormulaReader::takeValue()
{
    const char c = current();
    if (isDigit(c) || c == '.')
        takeNumber();
    else if (isLetter(c) || c == '_')
        takeName();
    else if (c == '{')
        takeBit();
    else if (c == '(')
        open('(');
    else if (c == '-')
        takeMinus();
    else if (c == '+')
        ++at_;
    else
        refuse(at_, "a value is missing here, such as A or 10");
}

/// Two signs cancel each other.
void FormulaReader::takeMinus()
{
    if (signEnd_ == result_.text.size() && signEnd_ != 0) {
        result_.text.resize(signEnd_ - std::string_view("- ").size());
        signEnd_ = 0;
        ++at_;
    } else {
        take("-", 1);
        signEnd_ = result_.text.size();
    }
}

void FormulaReader::takeNumber()
{
    const std::string small = inSmallLetters(rest());
    const char* const begin = small.data();
    const char* const end = begin + small.size();
    double number = 0;
    std::from_chars_result read{};
    if (small.starts_with("0x")) {
        std::uint32_t digits = 0;
        read = std::from_chars(begin + 2, end, digits, 16);
        number = digits;
    } else {
        read = std::from_chars(begin, end, number);
    }
    if (read.ec == std::errc::result_out_of_range)
        return refuse(at_, "the number is too large, or too small");
    if (read.ec != std::errc())
        return refuse(at_, "this is no number");
    std::array<char, 32> text{};
    const auto written = std::to_chars(text.data(), text.data() + text.size(), number);
    endValue({text.data(), written.ptr}, static_cast<std::size_t>(read.ptr - begin));
}

void FormulaReader::takeName()
{
    std::size_t length = 0;
    while (length < rest().size() &&
           (isLetter(rest()[length]) || isDigit(rest()[length]) || rest()[length] == '_'))
        ++length;
    const std::string_view name = rest().substr(0, length);
    const std::string_view behind = trimmed(rest().substr(length), " \t\r\n");
    if (behind.starts_with('('))
        takeFunction(name);
    else
        takeByte(name);
}

void FormulaReader::takeFunction(std::string_view name)
{
    const FormulaFunction* const function = findFunction(inSmallLetters(name));
    if (function == nullptr)
        return refuse(at_, "there is no function " + std::string(name));
    result_.text += function->name; // the parenthesis stands directly behind it
    at_ += name.size();
    skipBlanks();
    open('f', function);
}

void FormulaReader::takeByte(std::string_view name)
{
    if (const auto index = byteIndex(name)) {
        result_.bytes.insert(*index);
        endValue(byteName(*index), name.size());
    } else if (findFunction(inSmallLetters(name)) != nullptr) {
        refuse(at_ + name.size(), "a parenthesis is missing behind " + std::string(name));
    } else {
        refuse(at_, "\"" + std::string(name) + "\" is no byte; they are called A, B, ... Z, AA, AB, ...");
    }
}

/// "{A:3}"
void FormulaReader::takeBit()
{
    const std::size_t end = rest().find('}');
    if (end == std::string_view::npos)
        return refuse(at_, "the brace is not closed");
    const std::string_view inside = rest().substr(1, end - 1);
    const std::size_t colon = std::min(inside.find(':'), inside.size());
    const auto index = byteIndex(trimmed(inside.substr(0, colon)));
    if (!index)
        return refuse(at_ + 1, "a byte and one of its bits are written as {A:3}");
    const auto bit = colon < inside.size() ? integerIn(inside.substr(colon + 1)) : std::nullopt;
    if (!bit || *bit < 0 || *bit >= static_cast<std::int32_t>(bitsOfByte))
        return refuse(at_ + 1 + std::min(colon + 1, inside.size()), "a byte has the bits 0 to 7");
    result_.bytes.insert(*index);
    endValue("bit(" + byteName(*index) + "," + std::to_string(*bit) + ")", end + 1);
}

void FormulaReader::takeOperator()
{
    const char c = current();
    if (c == ')')
        return takeClosing();
    if (c == ',')
        return takeComma();
    if (c == ':')
        return takeColon();
    if (c == '?')
        return open('?');
    if (const FormulaOperator* const found = operatorAt(rest())) {
        take(found->sign, found->sign.size());
        expectsValue_ = true;
    } else if (c == '=') {
        refuse(at_, "nothing can be assigned; == compares");
    } else if (isLetter(c) || isDigit(c) || std::string_view("._{(").find(c) != std::string_view::npos) {
        refuse(at_, "an operator is missing here, such as *");
    } else {
        refuse(at_, "this character means nothing in a formula");
    }
}

void FormulaReader::takeComma()
{
    if (!isOpen('f'))
        return refuse(at_, "a comma only parts what a function takes; decimals have a point");
    Open& call = open_.back();
    if (++call.arguments > call.function->fewestArguments() && !call.function->takesMore())
        return refuse(at_, std::string(call.function->name) + "() takes no more than " +
                               std::to_string(call.function->fewestArguments()));
    take(",", 1);
    expectsValue_ = true;
}

void FormulaReader::takeColon()
{
    if (!isOpen('?'))
        return refuse(at_, R"(there is no "?" before this ":")");
    open_.pop_back();
    take(":", 1);
    expectsValue_ = true;
}

void FormulaReader::takeClosing()
{
    if (isOpen('?'))
        return refuse(at_, R"(the ":" of a "?" is missing here)");
    if (open_.empty())
        return refuse(at_, "no parenthesis is open here");
    const Open call = open_.back();
    if (call.function != nullptr && call.arguments < call.function->fewestArguments())
        return refuse(at_, std::string(call.function->name) + "() needs " +
                               std::to_string(call.function->fewestArguments()) + " values");
    open_.pop_back();
    endValue(")", 1);
}

void FormulaReader::open(char kind, const FormulaFunction* function)
{
    open_.push_back({.kind = kind, .position = at_, .function = function});
    take(kind == '?' ? "?" : "(", 1);
    expectsValue_ = true;
}

void FormulaReader::endValue(std::string_view text, std::size_t length)
{
    take(text, length);
    expectsValue_ = false;
}

void FormulaReader::take(std::string_view text, std::size_t length)
{
    result_.text.append(text).append(" ");
    at_ += length;
}

void FormulaReader::finish()
{
    if (result_.text.empty())
        refuse(0, "the formula is missing");
    else if (expectsValue_)
        refuse(typed_.size(), "a value is missing at the end");
    else if (!open_.empty())
        refuse(open_.back().position,
               isOpen('?') ? R"(the ":" of this "?" is missing)" : "this parenthesis is not closed");
}

void FormulaReader::refuse(std::size_t position, std::string text)
{
    result_.fault = {.position = position, .text = std::move(text)};
}

} // namespace

std::string byteName(std::size_t index)
{
    const std::string last(1, static_cast<char>('A' + index % letterCount));
    return index < letterCount ? last : byteName(index / letterCount - 1) + last;
}

FormulaText readFormula(std::string_view typed) { return FormulaReader(typed).read(); }

} // namespace zint
