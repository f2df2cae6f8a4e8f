#include "report/requestOutcomes.h"

#include "shared/module1.h"
#include "vehicle/infotypes.h"
#include "vehicle/parameters.h"
#include "vehicle/refusalText.h"
#include "vehicle/testNames.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace zint {
namespace {

using Kind = RequestOutcome::Kind;

struct Outcome {
    Kind kind;
    std::string_view text;
};

constexpr std::string_view busyText = "busy: the answer did not come";
constexpr std::string_view damagedText = "damaged or incomplete";
constexpr std::string_view silentText = "no answer";

/// In the order of ReplyError.
constexpr auto failures = std::to_array<Outcome>({
    {Kind::noAnswer, silentText},
    {Kind::noAnswer, silentText},
    {Kind::noAnswer, "no answer: the adapter found no vehicle"},
    {Kind::noAnswer, "no answer: the bus could not be initialised"},
    {Kind::noAnswer, "no answer: bus error"},
    {Kind::noAnswer, "no answer: CAN error"},
    {Kind::noAnswer, "no answer: the adapter was interrupted"},
    {Kind::damaged, "damaged or incomplete: longer than the adapter's memory"},
    {Kind::damaged, damagedText},
    {Kind::damaged, damagedText},
    {Kind::noAnswer, "no answer: the adapter was reset by a low voltage"},
    {Kind::noAnswer, "no answer: the adapter went to sleep"},
    {Kind::noAnswer, "the adapter does not know the request"},
    {Kind::damaged, damagedText},
    {Kind::noAnswer, silentText},
    {Kind::damaged, damagedText},
});

/// In the order of Shortfall.
constexpr auto shortfalls = std::to_array<Outcome>(
    {{Kind::damaged, damagedText}, {Kind::busy, busyText}, {Kind::noAnswer, silentText}});

constexpr std::uint8_t sensorTests = 0x05;

constexpr Outcome unsupportedOrNothing{Kind::notSupported, "not supported, or nothing to tell"};

Kind kindOf(std::uint8_t refusal)
{
    constexpr std::array<std::uint8_t, 5> unsupported = {0x11, 0x12, 0x31, 0x7E, 0x7F};
    if (std::ranges::find(unsupported, refusal) != unsupported.end())
        return Kind::notSupported;
    if (refusal == 0x21 || refusal == 0x78)
        return Kind::busy;
    return refusal == 0x22 || (refusal > 0x80 && refusal < 0xF0) ? Kind::refusedForNow : Kind::refused;
}

/// A request's bytes; -1 for one that it does not have.
struct RequestBytes {
    int service = -1;
    int item = -1;
    int place = -1; ///< the frame, or the sensor of mode 05

    explicit RequestBytes(std::string_view request)
        : service(byteAt(request, 0)), item(byteAt(request, 2)), place(byteAt(request, 4))
    {
    }

    bool asksForList() const { return item >= 0 && item % 0x20 == 0; }

private:
    static int byteAt(std::string_view request, std::size_t start)
    {
        return request.size() < start + 2 ? -1 : hexIn(request.substr(start, 2)).value_or(-1);
    }
};

/// Whether a unit that has nothing to tell, or does not know the request, may keep silent. The items that
/// are asked because a unit lists them are none of these.
bool maySilenceSayNo(const RequestBytes& request, BusProtocol protocol)
{
    switch (request.service) {
    case 0x02:
        return request.item == 0x02 || request.asksForList();
    case 0x03:
    case 0x07:
        return !isCan(protocol);
    case 0x05:
    case 0x06:
    case 0x09:
        return request.asksForList();
    default:
        return request.service == 0x0A;
    }
}

/// Whether a unit was asked for another one's sake: that one lists the item, and this one does not. All units
/// hear each request, and some refuse what others answer.
bool wasMeantForOthers(const RequestBytes& request, const std::string& name, const VehicleFacts& facts)
{
    const auto lists = [&request](const auto& unit) {
        const auto service = static_cast<std::uint8_t>(request.service);
        return service == sensorTests ? unit.second.supported.contains(service) // whichever sensor is asked
                                      : unit.second.supports(service, request.item);
    };
    const auto isListedBy = [&](const auto& unit) { return unit.first == name && lists(unit); };
    return std::ranges::any_of(facts.units, lists) && std::ranges::none_of(facts.units, isListedBy);
}

bool hasFourBanks(const VehicleFacts& facts)
{
    return std::ranges::any_of(facts.units, [](const auto& unit) { return unit.second.hasFourBanks(); });
}

std::string named(std::string_view name, const char* kind, int item)
{
    return name.empty() ? std::string(kind) + " " + hexText(item, 2) : std::string(name);
}

std::string itemSubject(const RequestBytes& request, const VehicleFacts& facts)
{
    const auto item = static_cast<std::uint8_t>(request.item);
    std::string parameter = named(parameterName(item), "parameter", item);
    const Infotype* const infotype = infotypeOf(item);
    switch (request.service) {
    case 0x02:
        return item == 0x02 ? "code of the freeze frame" : parameter + " (freeze frame)";
    case 0x05:
        return named(testName(item), "test", item) + " of " +
               sensorName(static_cast<std::uint8_t>(request.place), hasFourBanks(facts));
    case 0x06:
        return isCan(facts.protocol) ? named(monitorName(item), "tests of monitor", item)
                                     : named({}, "test", item);
    case 0x09:
        return named(infotype == nullptr ? std::string_view() : infotype->name, "information type", item);
    default:
        return parameter;
    }
}

struct Subject {
    int service;
    std::string_view list; ///< what the service tells as a whole, or lists
};

std::string subjectOf(const RequestBytes& request, const VehicleFacts& facts)
{
    static constexpr auto subjects = std::to_array<Subject>({
        {0x01, "list of the live values"},
        {0x02, "list of the freeze frame's values"},
        {0x03, "stored codes"},
        {0x04, "clearing"},
        {0x05, "list of the oxygen sensor tests"},
        {0x06, "list of the tests"},
        {0x07, "pending codes"},
        {0x09, "list of the vehicle information"},
        {0x0A, "permanent codes"},
    });
    if (request.item >= 0 && !request.asksForList())
        return itemSubject(request, facts);
    const auto* const subject = std::ranges::find(subjects, request.service, &Subject::service);
    return subject == subjects.end() ? std::string() : std::string(subject->list);
}

/// Puts the outcomes together.
class OutcomeList {
public:
    explicit OutcomeList(const VehicleFacts& facts) : facts_(facts) {}

    void add(const std::string& request, const std::string& unit, Kind kind, std::string text)
    {
        list_.push_back({request, subjectOf(RequestBytes(request), facts_), unit, kind, std::move(text)});
    }

    void add(const std::string& request, const std::string& unit, const Outcome& outcome)
    {
        add(request, unit, outcome.kind, std::string(outcome.text));
    }

    void addFailure(const std::string& request, ReplyError error)
    {
        const bool isSilent = error == ReplyError::noData || error == ReplyError::empty;
        const bool isNo = isSilent && maySilenceSayNo(RequestBytes(request), facts_.protocol);
        add(request, {}, isNo ? unsupportedOrNothing : failures.at(static_cast<std::size_t>(error)));
    }

    std::vector<RequestOutcome> take()
    {
        std::ranges::stable_sort(list_, {}, &RequestOutcome::request);
        return std::move(list_);
    }

private:
    const VehicleFacts& facts_;
    std::vector<RequestOutcome> list_;
};

} // namespace

std::vector<RequestOutcome> requestOutcomes(const VehicleFacts& facts)
{
    OutcomeList outcomes(facts);
    for (const auto& [request, units] : facts.refusals) {
        for (const auto& [unit, code] : units) {
            const Kind kind = kindOf(code);
            if (kind != Kind::notSupported || !wasMeantForOthers(RequestBytes(request), unit, facts))
                outcomes.add(request, unit, kind, refusalText(code));
        }
    }
    for (const auto& [request, units] : facts.shortfalls) {
        for (const auto& [unit, shortfall] : units)
            outcomes.add(request, unit, shortfalls.at(static_cast<std::size_t>(shortfall)));
    }
    for (const auto& [request, error] : facts.failures)
        outcomes.addFailure(request, error);
    return outcomes.take();
}

} // namespace zint
