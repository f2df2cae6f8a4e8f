#include "catalogue/designFile.h"
#include "shared/fileError.h"
#include "shared/runTimeError.h"

#include <gtest/gtest.h>

#include <sstream>

namespace zint {
namespace {

using namespace std::string_literals;

Design read(const std::string& text, std::size_t mostEvents = Design::maxEvents)
{
    std::istringstream stream(text);
    return readDesign(stream, mostEvents);
}

/// What is written of what was read.
std::string rewritten(const std::string& text)
{
    std::ostringstream stream;
    writeDesign(stream, read(text));
    return stream.str();
}

TEST(DesignFileTest, ReadsWhatItWritesAndSkipsWhatIsNoEvent)
{
    const std::string whole = "Default Settings\r\n|-1\r\n010C|Engine RPM|5|10|1|0|0\r\n"
                              "010D|Vehicle Speed|7|0|2|-3|4\r\nEOP - end of Parms\r\n";
    EXPECT_EQ(rewritten(whole), whole);
    EXPECT_EQ(rewritten("\xEF\xBB\xBFt\xE9st\n|200\n0105|Coolant Temp|3|1|0\ngarbage\na|b|c|d\n"
                        "0104|six fields|1|2|1|7\nEOP - end of Parms and more\n0106|not read|x|y|z\n"),
              "t\xC3\xA9st\r\n|200\r\n0105|Coolant Temp|3|1|0|0|0\r\n0104|six fields|1|2|1|0|0\r\n"
              "EOP - end of Parms\r\n");
    for (const std::string settings : {"ATSH 81 10 F1|-1", "|102", "|4", "|1020"})
        EXPECT_EQ(rewritten("t\n" + settings), "t\r\n" + settings + "\r\nEOP - end of Parms\r\n");
    for (const std::string settings : {"|3", "|1021", "|-2", "\n"})
        EXPECT_EQ(rewritten("t\n" + settings), "t\r\n|200\r\nEOP - end of Parms\r\n") << settings;
    EXPECT_TRUE(rewritten("t\nATH1\n").starts_with("t\r\nATH1|200\r\n"));
}

TEST(DesignFileTest, WhatIsWrongIsRefused)
{
    for (const char* text : {"t\n|fast\n", "t\n|40000\n", "t\n|\n", "t\n|200\n0105|x|three|1|0\n",
                             "t\n|200\n0105|x|1|1|0|0|0|0\n", "t\n|200\n0105|x|99999999999|1|0\n"})
        EXPECT_THROW(read(text), RunTimeError) << text;
    for (const std::string& text :
         {""s, "title only"s, "t\0itle\n|200\n"s, "t\n|200\n" + std::string(100000, 'x')})
        EXPECT_THROW(read(text), FileError) << text.substr(0, 12);
    std::string full = "t\n|200\n";
    for (int i = 0; i < 64; ++i)
        full += "0105|x|1|1|0\n";
    EXPECT_EQ(read(full).events.size(), 64U);
    full += "0106|y|1|0|0\n";
    EXPECT_THROW(read(full), FileError);
    EXPECT_EQ(read(full, 65).events.size(), 65U) << "while it is edited, a design may be longer";
}

} // namespace
} // namespace zint
