#include "designer/pollCost.h"

#include "catalogue/eventValue.h"
#include "catalogue/ownParameter.h"
#include "catalogue/requestTime.h"
#include "parameters/standardParameters.h"
#include "vehicle/parameters.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <numeric>
#include <set>
#include <utility>

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

/// Rows that one request can ask for, by what they have in common.
using SharingRows = std::map<std::vector<std::string>, std::vector<const DesignEntry*>>;

std::vector<std::string> addressOf(const DesignEntry& row)
{
    return row.own != nullptr ? std::vector{row.own->header, row.own->filter} : std::vector<std::string>(2);
}

/// Rows that ask the same of the same units, but for those whose raw values are kept: these have requests of
/// their own.
SharingRows sameRows(const GridRows& rows)
{
    SharingRows sharing;
    for (const DesignEntry& row : rows) {
        std::vector<std::string> key = addressOf(row);
        key.push_back(comparedRequest(row.code));
        if (row.isPolled() && !keepsRawValues(row.conversion))
            sharing[key].push_back(&row);
    }
    return sharing;
}

/// Rows of parameters of the same units, with lengths that are known.
SharingRows combinedRows(const GridRows& rows)
{
    SharingRows sharing;
    for (const DesignEntry& row : rows) {
        const auto pid = requestedParameter(row.code);
        if (row.isPolled() && pid && parameterLength(*pid))
            sharing[addressOf(row)].push_back(&row);
    }
    return sharing;
}

/// After how many loops the same ones are due again; no more than some, which tell enough.
std::int64_t loopsToLookAt(const std::vector<const DesignEntry*>& rows)
{
    constexpr std::int64_t most = 900;
    std::int64_t loops = 1;
    for (const DesignEntry* row : rows)
        loops = std::min(std::lcm(loops, std::int64_t{row->frequency}), most);
    return loops;
}

/// How many requests fewer a loop has on average when the rows share them.
double savedRequests(const std::vector<const DesignEntry*>& rows)
{
    constexpr std::size_t mostTogether = 6; // parameters, by the standard on CAN (ISO 15031-5)
    const std::int64_t loops = loopsToLookAt(rows);
    std::size_t saved = 0;
    for (std::int64_t loop = 0; loop < loops; ++loop) {
        std::size_t due = 0;
        std::set<std::string> codes;
        for (const DesignEntry* row : rows) {
            if (!isDue(*row, loop))
                continue;
            ++due;
            codes.insert(comparedRequest(row->code));
        }
        saved += due - (codes.size() + mostTogether - 1) / mostTogether;
    }
    return static_cast<double>(saved) / static_cast<double>(loops);
}

double savedRequests(const SharingRows& groups)
{
    double saved = 0;
    for (const auto& [common, rows] : groups)
        saved += rows.size() > 1 ? savedRequests(rows) : 0;
    return saved;
}

} // namespace

std::string pollCost(const GridRows& rows, SampleSpeed sampleSpeed, int bitsPerSecond, double measuredSeconds)
{
    double values = 0;
    for (const DesignEntry& row : rows) {
        if (row.isPolled())
            values += 1.0 / row.frequency;
    }
    GridRows others = rows; // than those that can be combined
    std::erase_if(others, [](const DesignEntry& row) {
        const auto pid = requestedParameter(row.code);
        return pid && parameterLength(*pid);
    });
    const double requests = values - savedRequests(sameRows(rows));
    const double fewest = values - savedRequests(sameRows(others)) - savedRequests(combinedRows(rows));
    const double seconds = requestSeconds(sampleSpeed, bitsPerSecond);
    const std::string alone = secondsText("", requests * seconds);
    const std::string combined = secondsText("", fewest * seconds);
    std::string text = requestsText(requests) + " per pass, " + secondsText("at most ", requests * seconds);
    if (combined != alone)
        text += " (" + combined + " with combined requests)";
    if (measuredSeconds > 0) // of an event, however many went in one request
        text += "; as fast as the last run, " + secondsText("", values * measuredSeconds);
    return text;
}

} // namespace zint
