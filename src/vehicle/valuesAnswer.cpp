#include "shared/module1.h"
#include "vehicle/monitorStatus.h"
#include "vehicle/serviceAnswers.h"
#include "vehicle/troubleCode.h"

#include <algorithm>

namespace zint {
namespace {

constexpr std::uint8_t statusPid = 0x01;
constexpr std::uint8_t frameCodePid = 0x02;
constexpr std::uint8_t cycleStatusPid = 0x41;

Bytes largest(const UnitReading& known, std::uint8_t pid)
{
    const auto found = known.rawValues.find(pid);
    return found != known.rawValues.end() ? found->second : Bytes();
}

} // namespace

ParameterContext contextOf(const UnitReading* known)
{
    if (known == nullptr)
        return {};
    return {.hasFourBanks = known->hasFourBanks(),
            .largestValues = largest(*known, 0x4F),
            .largestAirFlow = largest(*known, 0x50)};
}

namespace {

/// What an undefined parameter has told, for those who know its make.
std::vector<ParameterValue> unknownValue(BytesView data)
{
    ParameterValue value;
    for (const std::uint8_t byte : data)
        value.text += (value.text.empty() ? "" : " ") + hexText(byte, 2);
    return {std::move(value)};
}

/// Cuts an answer into its parameters. One that was asked alone gets all bytes, with the padding that
/// adapters may show; among several, the lengths of the standard decide. An id that was not asked is
/// padding, and so is one that was told already: 00 is both an id and the usual padding.
class ParameterCutter {
public:
    /// @param headLength of an id and what follows it in front of the data
    ParameterCutter(const ServiceAnswer& answer, std::size_t headLength)
        : answer_(answer), context_(contextOf(answer.known)), headLength_(headLength)
    {
    }

    /// Calls `take` with each parameter's head and data. @return whether the answer is long enough
    template <typename Take>
    bool cut(const Take& take) const
    {
        BytesView rest = answer_.data;
        if (rest.empty())
            return false;
        Bytes told;
        while (!rest.empty() && (told.empty() || isNext(rest.front(), told))) {
            if (rest.size() < headLength_)
                return false;
            told.push_back(rest.front());
            const BytesView head = rest.first(headLength_);
            rest = rest.subspan(headLength_);
            const std::optional<std::size_t> length = lengthOf(head.front(), rest.size());
            if (!length)
                return true; // of an unknown length among others: nobody knows where the next one begins
            if (rest.size() < *length)
                return false;
            take(head, rest.first(*length));
            rest = rest.subspan(*length);
        }
        return true;
    }

    std::vector<ParameterValue> values(std::uint8_t pid, BytesView data) const
    {
        return parameterLength(pid) ? parameterValues(pid, data, context_) : unknownValue(data);
    }

private:
    bool isNext(std::uint8_t pid, const Bytes& told) const
    {
        return wasAsked(pid) && std::ranges::find(told, pid) == told.end();
    }

    bool wasAsked(std::uint8_t pid) const
    {
        for (std::size_t i = 0; i < answer_.asked.size(); i += headLength_) {
            if (answer_.asked[i] == pid)
                return true;
        }
        return false;
    }

    /// @return nothing when the length is not known; more than available when bytes are missing
    std::optional<std::size_t> lengthOf(std::uint8_t pid, std::size_t available) const
    {
        if (asksForBitmap(pid))
            return bitmapLength;
        const std::optional<std::size_t> length = parameterLength(pid, context_);
        const bool isAlone = answer_.asked.size() <= headLength_;
        return isAlone ? std::max(length.value_or(1), available) : length;
    }

    const ServiceAnswer& answer_;
    ParameterContext context_;
    std::size_t headLength_;
};

void readStatus(BytesView status, UnitReading& reading)
{
    constexpr unsigned milBit = 0x80;
    reading.mil = (status[0] & milBit) != 0;
    reading.dtcCount = static_cast<int>(status[0] & ~milBit);
    reading.readiness = readinessIn(status);
}

} // namespace

void readValues(const ServiceAnswer& answer, UnitReading& reading)
{
    const ParameterCutter cutter(answer, 1);
    const bool isWhole = cutter.cut([&](BytesView head, BytesView data) {
        const std::uint8_t pid = head.front();
        if (asksForBitmap(pid)) {
            addSupported(reading.supported[answer.service], pid, data);
        } else if (pid == statusPid) {
            readStatus(data, reading);
        } else if (pid == cycleStatusPid) {
            reading.cycleReadiness = readinessIn(data);
        } else {
            reading.values[pid] = cutter.values(pid, data);
            reading.rawValues[pid] = Bytes(data.begin(), data.end());
        }
    });
    reading.isIncomplete = reading.isIncomplete || !isWhole;
}

void forEachParameter(const ServiceAnswer& answer, const std::function<void(std::uint8_t, BytesView)>& take)
{
    ParameterCutter(answer, 1).cut([&](BytesView head, BytesView data) { take(head.front(), data); });
}

void readFreezeFrame(const ServiceAnswer& answer, UnitReading& reading)
{
    const ParameterCutter cutter(answer, 2); // the frame's number follows the parameter
    const bool isWhole = cutter.cut([&](BytesView head, BytesView data) {
        const std::uint8_t pid = head.front();
        if (asksForBitmap(pid)) {
            addSupported(reading.supported[answer.service], pid, data);
            return;
        }
        FreezeFrame& frame = reading.freezeFrame ? *reading.freezeFrame : reading.freezeFrame.emplace();
        frame.frame = head[1];
        if (pid == frameCodePid) {
            frame.isCodeTold = true;
            frame.code = data[0] == 0 && data[1] == 0 ? "" : troubleCode(data[0], data[1]);
        } else {
            frame.values[pid] = cutter.values(pid, data);
        }
    });
    reading.isIncomplete = reading.isIncomplete || !isWhole;
}

} // namespace zint
