#include "designer/pollCost.h"

#include "catalogue/requestTime.h"

#include <array>
#include <charconv>

namespace zint {
namespace {

/// In decimal, without the zeros that end it.
std::string decimal(double value, int digits)
{
    std::array<char, 64> buffer{};
    char* const end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, digits)
            .ptr;
    std::string text(buffer.data(), end);
    text.erase(text.find_last_not_of('0') + 1);
    return text.ends_with('.') ? text.substr(0, text.size() - 1) : text;
}

std::string requestsText(double requests)
{
    constexpr double fewest = 0.1;
    if (requests > 0 && requests < fewest)
        return "Less than 0.1 requests";
    const std::string number = decimal(requests, 1);
    return "About " + number + (number == "1" ? " request" : " requests");
}

std::string secondsText(const std::string& most, double seconds)
{
    const std::string number = decimal(seconds, 2);
    return number == "0" && seconds > 0 ? "less than 0.01 s" : most + number + " s";
}

} // namespace

std::string pollCost(const GridRows& rows, SampleSpeed sampleSpeed, int bitsPerSecond, double measuredSeconds)
{
    double requests = 0;
    for (const DesignEntry& row : rows) {
        if (row.isPolled())
            requests += 1.0 / row.frequency;
    }
    std::string text = requestsText(requests) + " per pass, " +
                       secondsText("at most ", requests * requestSeconds(sampleSpeed, bitsPerSecond));
    if (measuredSeconds > 0)
        text += "; as fast as the last run, " + secondsText("", requests * measuredSeconds);
    return text;
}

} // namespace zint
