#include "scanner/scanSequence.h"

#include "catalogue/pidCatalogue.h"
#include "shared/module1.h"

#include <algorithm>
#include <string_view>

namespace zint {
namespace {

constexpr std::int32_t erasingMode = ScanParameters::erasingMode;
constexpr std::int32_t answerOffset = 0x40; // from a mode to the first byte of its positive replies
constexpr std::size_t wideLength = 3;       // a box of so many digits asks for PIDs of four

bool holdsSomething(std::string_view box) { return box.find_first_not_of(' ') != std::string_view::npos; }

/// Modes 01 and 02 have the same parameters: as they are now, and as they were when a code was stored.
std::string_view nameOf(std::int32_t mode, std::int32_t pid)
{
    constexpr std::int32_t freezeFrame = 2;
    if (mode < 1 || mode > freezeFrame || pid < 0 || pid >= pidCount)
        return {};
    const Pid& known = PidNames.at(static_cast<std::size_t>(pid));
    return known.hasMeaning() ? known.name : std::string_view();
}

/// With as many digits as whole bytes need.
std::string hexBytes(std::int32_t number, std::size_t fewestDigits)
{
    std::string text = hexText(number, fewestDigits);
    return text.size() % 2 == 0 ? text : hexText(number, text.size() + 1);
}

} // namespace

ScanSequence::ScanSequence(const ScanParameters& boxes)
    : curMode_(scanNumber(boxes.modeStart)), curPid_(scanNumber(boxes.pidStart)),
      endMode_(scanNumber(boxes.modeStop)), endPid_(scanNumber(boxes.pidStop)),
      hasPid_(holdsSomething(boxes.pidStart)),
      widePid_(std::max(boxes.pidStart.size(), boxes.pidStop.size()) >= wideLength),
      hasSuffix_(holdsSomething(boxes.cmdSuffix))
{
    if (endPid_ == 0 && curPid_ > 0)
        endPid_ = curPid_;
}

std::optional<ScanRequest> ScanSequence::next(const ScanParameters& boxes)
{
    hasSkipped_ = boxes.skipsErasingMode() && curMode_ == erasingMode;
    if (hasSkipped_)
        ++curMode_;
    if (curMode_ > endMode_ || (curMode_ == endMode_ && curPid_ > endPid_))
        return std::nullopt;
    ScanRequest request{.text = hexText(curMode_, 2),
                        .expectedPrefix = hexText(curMode_ + answerOffset, 2),
                        .name = hasPid_ ? nameOf(curMode_, curPid_) : std::string_view()};
    if (hasPid_) {
        const std::string pid = hexBytes(curPid_, widePid_ ? 4 : 2);
        request.text += pid;
        for (std::size_t i = 0; i < pid.size(); i += 2)
            request.expectedPrefix.append(1, ' ').append(pid, i, 2);
    }
    if (hasSuffix_)
        request.text += boxes.cmdSuffix;
    advance(boxes);
    return request;
}

void ScanSequence::advance(const ScanParameters& boxes)
{
    if (hasPid_ && ++curPid_ <= endPid_)
        return;
    ++curMode_;
    if (hasPid_)
        curPid_ = scanNumber(boxes.pidStart);
}

std::int64_t ScanSequence::left(const ScanParameters& boxes) const
{
    // A mode whose first PID lies behind the last one still sends that, unless it is the last mode.
    const auto inMode = [this](std::int64_t mode, std::int64_t firstPid) {
        const std::int64_t fewest = mode < endMode_ ? 1 : 0;
        if (mode > endMode_)
            return std::int64_t{0};
        return hasPid_ ? std::max(endPid_ - firstPid + 1, fewest)
                       : std::int64_t{firstPid <= endPid_ ? 1 : fewest};
    };
    const std::int64_t startPid = hasPid_ ? scanNumber(boxes.pidStart) : curPid_;
    std::int64_t all = inMode(curMode_, curPid_);
    if (curMode_ < endMode_)
        all += (endMode_ - curMode_ - 1) * inMode(endMode_ - 1, startPid) + inMode(endMode_, startPid);
    if (boxes.skipsErasingMode() && curMode_ <= erasingMode)
        all -= inMode(erasingMode, curMode_ == erasingMode ? curPid_ : startPid);
    return all;
}

} // namespace zint
