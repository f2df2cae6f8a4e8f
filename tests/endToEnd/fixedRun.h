#pragma once

#include "platform/dateText.h"
#include "support/temporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <regex>
#include <sstream>
#include <string>

namespace zint {

/// Asks for values that stay the same all the time, one that the vehicle does not know, and one never.
inline constexpr const char* fixedDesign = "Fixed Values\r\n"
                                           "|-1\r\n"
                                           "0133|Barometer|9|1|0|0|0\r\n"
                                           "0105|Unpolled|4|0|0|0|0\r\n"
                                           "011C|OBD type|20|2|1|0|0\r\n"
                                           "010A|Not There|0|3|0|0|0\r\n"
                                           "EOP - end of Parms\r\n";

inline std::string line(const std::string& text, std::size_t number)
{
    std::istringstream stream(text);
    std::string found;
    for (std::size_t i = 0; i < number; ++i)
        std::getline(stream, found);
    return found.substr(0, found.find('\r'));
}

/// The log and the export of four loops of the fixed design, which take less than ten seconds. All but their
/// times and the date is known to the byte.
inline void expectFourLoops(const std::string& log, const std::string& table,
                            std::chrono::system_clock::time_point started)
{
    const std::string date = line(log, 7);
    bool isInTime = false;
    for (auto time = started; time <= std::chrono::system_clock::now() + std::chrono::seconds(1);
         time += std::chrono::seconds(1))
        isInTime = isInTime || dateText(time) == date;
    EXPECT_TRUE(isInTime) << date;

    const auto withoutTimes = [](const std::string& text) {
        return std::regex_replace(text, std::regex("\n[0-9](?=[,\t])"), "\nT");
    };
    EXPECT_EQ(withoutTimes(log), "Fixed Values\r\n"
                                 "|-1\r\n"
                                 "0133|Barometer|9|1|0\r\n"
                                 "011C|OBD type|20|2|1\r\n"
                                 "010A|Not There|0|3|0\r\n"
                                 "EOP - end of Parms\r\n" +
                                     date +
                                     "\r\n"
                                     " 8 \r\n"
                                     "##1\r\nT,99\r\nT,99\r\nT,99\r\nT,99\r\n"
                                     "##2\r\nT,1\r\nT,1\r\n");
    EXPECT_EQ(withoutTimes(table), "Fixed Values " + date +
                                       "\r\n"
                                       " \r\n"
                                       "Second(s)\tBarometer(kPa)\tOBD type( )\tNot There( ?)\r\n"
                                       "T\t99\t\t\r\nT\t99\t&H1\t\r\nT\t99\t\t\r\nT\t99\t&H1\t\r\n");
}

} // namespace zint
