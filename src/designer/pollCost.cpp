#include "designer/pollCost.h"

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

/// Rows of parameters that one request can ask for: of the same units, with lengths that are known.
using SharingRows = std::map<std::pair<std::string, std::string>, std::vector<const DesignEntry*>>;

SharingRows sharingRows(const GridRows& rows)
{
    SharingRows sharing;
    for (const DesignEntry& row : rows) {
        const auto pid = requestedParameter(row.code);
        if (!row.isPolled() || !pid || !parameterLength(*pid))
            continue;
        const auto address =
            row.own != nullptr ? std::pair(row.own->header, row.own->filter) : SharingRows::key_type();
        sharing[address].push_back(&row);
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
            codes.insert(row->code);
        }
        saved += due - (codes.size() + mostTogether - 1) / mostTogether;
    }
    return static_cast<double>(saved) / static_cast<double>(loops);
}

double savedRequests(const GridRows& rows)
{
    double saved = 0;
    for (const auto& [address, sharing] : sharingRows(rows))
        saved += sharing.size() > 1 ? savedRequests(sharing) : 0;
    return saved;
}

} // namespace

std::string pollCost(const GridRows& rows, SampleSpeed sampleSpeed, int bitsPerSecond, double measuredSeconds)
{
    double requests = 0;
    for (const DesignEntry& row : rows) {
        if (row.isPolled())
            requests += 1.0 / row.frequency;
    }
    const double seconds = requestSeconds(sampleSpeed, bitsPerSecond);
    const std::string alone = secondsText("", requests * seconds);
    const std::string combined = secondsText("", (requests - savedRequests(rows)) * seconds);
    std::string text = requestsText(requests) + " per pass, " + secondsText("at most ", requests * seconds);
    if (combined != alone)
        text += " (" + combined + " with combined requests)";
    if (measuredSeconds > 0)
        text += "; as fast as the last run, " + secondsText("", requests * measuredSeconds);
    return text;
}

} // namespace zint
