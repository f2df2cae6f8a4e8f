#include "parameters/formula.h"

#include <gtest/gtest.h>

#include <cmath>

namespace zint {
namespace {

const Bytes fourBytes{0x80, 0x01, 0xFF, 0x00}; // A, B, C, D

struct Computed {
    const char* formula;
    double value;
};

TEST(FormulaTest, ComputesWhatPhoneProgramsWrite)
{
    constexpr Computed rows[] = {
        {"A", 128},
        {" a - 40 ", 88},
        {"(A*256+B)/4", 8192.25},
        {"((a*256)+b)*0.05", 1638.45},
        {"SIGNED(A)", -128},
        {"signed ( B )*256 + c", 511},
        {"Signed16(A*256+B)", -32767},
        {"signed24(c*65536+c*256+c)", -1},
        {"signed32(C<<24|C<<16|C<<8|C)", -1},
        {"{A:7}", 1},
        {"{a : 0}+{ B:0 }*2", 2},
        {"A&0xF0|B", 129},
        {"A>>4", 8},
        {"1|3&4", 1},
        {"1<2<<1", 1},
        {"3>=2>1", 0},
        {"B<<4+1", 32},
        {"C%16", 15},
        {"mod(C,16)+and(C,12)+or(B,2)+xor(B,3)+shl(B,3)+shr(C,7)", 15 + 12 + 3 + 2 + 8 + 1},
        {"int(-A/100)", -1},
        {"round(2.5)+floor(-1.5)+ceil(1.2)", 3},
        {"abs(B-A)", 127},
        {"min(A,B,C)+max(B,2)", 3},
        {"sqrt(C+1)^2^0.5*pow(2,2)", 4 * std::pow(16, std::sqrt(2.0))},
        {"log10(100)+log(exp(1))+ln(1)", 3},
        {"-2^2", -4},
        {"2^-1", 0.5},
        {"3- - -2", 1},
        {"--+-A", -128},
        {"-D", 0},
        {".5+1e2", 100.5},
        {"D==0 ? 7 : A/D", 7},
        {"A>200?1:B>=1&&D!=0||C<256?2:3", 2},
        {"max(A?1:2,B?3:4)", 3},
        {"1 - {D:0}", 1},
    };
    for (const Computed& row : rows) {
        const Formula formula(row.formula);
        EXPECT_EQ(formula.fault().value_or(FormulaFault{0, "none"}).text, "none") << row.formula;
        const FormulaResult result = formula.evaluate(fourBytes);
        ASSERT_TRUE(result.number) << row.formula << ": " << result.why;
        EXPECT_DOUBLE_EQ(*result.number, row.value) << row.formula;
        EXPECT_EQ(std::signbit(*result.number), row.value < 0) << row.formula;
    }
}

TEST(FormulaTest, CountsBytesAsSpreadsheetsCountColumns)
{
    Bytes many(256);
    for (std::size_t i = 0; i < many.size(); ++i)
        many[i] = static_cast<std::uint8_t>(i);
    for (const auto& [name, index] : {std::pair{"Z", 25}, {"AA", 26}, {"az", 51}, {"BZ", 77}, {"IV", 255}}) {
        const Formula formula(name);
        EXPECT_EQ(formula.evaluate(many).number, index);
        EXPECT_EQ(formula.bytesNeeded(), static_cast<std::size_t>(index) + 1);
    }
    EXPECT_EQ(Formula("D+B").bytesNeeded(), 4U);
    EXPECT_EQ(Formula("3").bytesNeeded(), 0U);
}

TEST(FormulaTest, GivesWordsInPlaceOfAFalseValue)
{
    const Formula quotient("100/A");
    EXPECT_EQ(quotient.evaluate(Bytes{0}).why, "division by zero");
    EXPECT_EQ(quotient.evaluate(Bytes{50}).number, 2) << "a failure does not last";
    constexpr std::pair<const char*, const char*> rows[] = {
        {"1/(A/D)", "division by zero"},
        {"A%0", "division by zero"},
        {"0/0", "division by zero"},
        {"sqrt(-A)", "no number"},
        {"1/log(D)", "no number"},
        {"1/(10^300*10^300)", "no number"},
        {"A+E+F", "the reply has no byte E"},
        {"signed(A*256+B)", "signed() of more than one byte"},
        {"signed16(A*65536)", "signed16() of more than 2 bytes"},
        {"1e300&1", "a number is too large for its bits"},
        {"1<<99", "a shift by more than 52 bits"},
    };
    for (const auto& [text, why] : rows) {
        const FormulaResult result = Formula(text).evaluate(fourBytes);
        EXPECT_FALSE(result.number) << text;
        EXPECT_EQ(result.why, why) << text;
    }
}

TEST(FormulaTest, PointsAtTheCharacterThatIsWrong)
{
    const std::string deep(1001, '(');
    const std::pair<std::string, FormulaFault> rows[] = {
        {"", {0, "the formula is missing"}},
        {"  ", {0, "the formula is missing"}},
        {"A+", {2, "a value is missing at the end"}},
        {"A+*B", {2, "a value is missing here, such as A or 10"}},
        {"A*(B+1", {2, "this parenthesis is not closed"}},
        {"A*B)", {3, "no parenthesis is open here"}},
        {"{A:3} + VAL(2)", {8, "there is no function VAL"}},
        {"{A:8}", {3, "a byte has the bits 0 to 7"}},
        {"{A}", {2, "a byte has the bits 0 to 7"}},
        {"1+{3:1}", {3, "a byte and one of its bits are written as {A:3}"}},
        {"{A:1", {0, "the brace is not closed"}},
        {"2A", {1, "an operator is missing here, such as *"}},
        {"A = 3", {2, "nothing can be assigned; == compares"}},
        {"1,5*A", {1, "a comma only parts what a function takes; decimals have a point"}},
        {"(1,5)", {2, "a comma only parts what a function takes; decimals have a point"}},
        {"signed(A,B)", {8, "signed() takes no more than 1"}},
        {"2*max(A)", {7, "max() needs 2 values"}},
        {"abs A", {3, "a parenthesis is missing behind abs"}},
        {"A+RPM", {2, "\"RPM\" is no byte; they are called A, B, ... Z, AA, AB, ..."}},
        {"A?1", {1, "the \":\" of this \"?\" is missing"}},
        {"(A?1):2", {4, "the \":\" of a \"?\" is missing here"}},
        {"A:1", {1, "there is no \"?\" before this \":\""}},
        {"A*\"x\"", {2, "a value is missing here, such as A or 10"}},
        {"A \xC2\xB0", {2, "this character means nothing in a formula"}},
        {"1e999", {0, "the number is too large, or too small"}},
        {"A+.", {2, "this is no number"}},
        {deep, {1000, "a formula has at most 1000 characters"}},
    };
    for (const auto& [text, fault] : rows) {
        const Formula formula(text);
        ASSERT_TRUE(formula.fault()) << text;
        EXPECT_EQ(formula.fault()->text, fault.text) << text;
        EXPECT_EQ(formula.fault()->position, fault.position) << text;
        EXPECT_FALSE(formula.evaluate(fourBytes).number) << text;
    }
    EXPECT_FALSE(Formula(std::string(499, '(') + "A" + std::string(499, ')')).fault());
}

} // namespace
} // namespace zint
