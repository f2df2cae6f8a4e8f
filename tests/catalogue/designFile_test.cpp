#include "catalogue/designFile.h"
#include "shared/fileError.h"
#include "shared/runTimeError.h"

#include <gtest/gtest.h>

#include <sstream>

namespace zint {
namespace {

Design read(const std::string& text)
{
    std::istringstream stream(text);
    return readDesign(stream);
}

std::string written(const Design& design)
{
    std::ostringstream stream;
    writeDesign(stream, design);
    return stream.str();
}

constexpr const char* twoEvents = "Default Settings\r\n"
                                  "|-1\r\n"
                                  "010C|Engine RPM|5|10|1|0|0\r\n"
                                  "010D|Vehicle Speed|7|0|2|-3|4\r\n"
                                  "EOP - end of Parms\r\n";

TEST(DesignFileTest, ReadsWhatItWritesAndSkipsWhatIsNoEvent)
{
    EXPECT_EQ(written(read(twoEvents)), twoEvents);
    EXPECT_EQ(read(twoEvents).polledCount(), 1U);
    EXPECT_EQ(
        written(read("t\n|200\n0105|Coolant Temp|3|1|0\ngarbage\na|b|c|d\n0104|six fields|1|2|1|7\n"
                     "EOP - end of Parms and more\n0106|not read|x|y|z\n")),
        "t\r\n|200\r\n0105|Coolant Temp|3|1|0|0|0\r\n0104|six fields|1|2|1|0|0\r\nEOP - end of Parms\r\n");
    for (const auto& [line, meant] : {std::pair{"ATSH 81 10 F1|-1", "ATSH 81 10 F1|-1"},
                                      {"ATH1", "ATH1|200"},
                                      {"|102", "|102"},
                                      {"|4", "|4"},
                                      {"|1020", "|1020"},
                                      {"|3", "|200"},
                                      {"|1021", "|200"},
                                      {"|-2", "|200"},
                                      {"", "|200"}})
        EXPECT_EQ(written(read("t\n" + std::string(line) + "\n")),
                  "t\r\n" + std::string(meant) + "\r\nEOP - end of Parms\r\n");
}

TEST(DesignFileTest, WhatIsWrongIsRefused)
{
    for (const char* text : {"t\n|fast\n", "t\n|40000\n", "t\n|\n", "t\n|200\n0105|x|three|1|0\n",
                             "t\n|200\n0105|x|1|1|0|0|0|0\n", "t\n|200\n0105|x|99999999999|1|0\n"})
        EXPECT_THROW(read(text), RunTimeError) << text;
    EXPECT_THROW(read(""), FileError);
    EXPECT_THROW(read("title only"), FileError);
    EXPECT_THROW(read("t\n|200\n" + std::string(100000, 'x')), FileError) << "a line without an end";
    EXPECT_THROW(read(std::string("t\0itle\n|200\n", 12)), FileError) << "no text";
    EXPECT_EQ(read("\xEF\xBB\xBFt\xE9st\n|200\n").title, "t\xC3\xA9st") << "what editors put there";

    std::string full = "t\n|200\n";
    for (int i = 0; i < 64; ++i)
        full += "0105|x|1|1|0\n";
    EXPECT_EQ(read(full).events.size(), 64U);
    full += "0106|y|1|0|0\n";
    EXPECT_THROW(read(full), FileError);
    std::istringstream stream(full);
    EXPECT_EQ(readDesign(stream, 65).events.at(64).code, "0106")
        << "while it is edited, a design may be longer";
}

} // namespace
} // namespace zint
