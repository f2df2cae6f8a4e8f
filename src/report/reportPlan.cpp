#include "report/reportPlan.h"

#include "shared/module1.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zint {
namespace {

constexpr int listStep = 0x20; // a list of what is supported covers so many items

constexpr std::string_view clearingCommand = "04";

std::string requestText(int service, int item) { return hexText(service, 2) + hexText(item, 2); }

int serviceOf(const std::string& command) { return hexIn(command.substr(0, 2)).value_or(0); }

/// The item of a request with one; -1 for "03".
int itemOf(const std::string& command)
{
    return command.size() < 4 ? -1 : hexIn(command.substr(2, 2)).value_or(-1);
}

bool isAdapterCommand(const std::string& command) { return command.starts_with("AT"); }

/// The last line of an answer that holds text, without the prompt; empty for a refusal. The echo of the
/// command may stand in front of it.
std::string answerText(std::string_view answer)
{
    std::string last;
    std::string line;
    for (const char character : std::string(answer) + "\r") {
        if (character >= ' ' && character <= '~' && character != '>')
            line += character;
        else if (!line.empty())
            last = std::exchange(line, {});
    }
    return last == "?" ? "" : last;
}

/// Whether a reply was cut short: answers may be missing that nothing tells of.
bool isCut(ReplyError error)
{
    constexpr std::array cuts = {ReplyError::stopped, ReplyError::bufferFull, ReplyError::dataError,
                                 ReplyError::rxError, ReplyError::lowVoltageReset};
    return std::ranges::find(cuts, error) != cuts.end();
}

bool isWhole(const UnitReading& unit)
{
    constexpr std::uint8_t busyAskAgain = 0x21;
    return !unit.isIncomplete && unit.refusal != busyAskAgain;
}

bool isAnyoneBusy(const ExchangeReading& reading)
{
    return std::ranges::any_of(reading.units, [](const auto& unit) { return unit.second.isBusy; });
}

/// Why nothing can be read, for an answer to the first request.
std::string connectionFailure(ReplyError error)
{
    switch (error) {
    case ReplyError::busInitError:
        return "The adapter can't begin a conversation with the vehicle (BUS INIT error): ignition on?";
    case ReplyError::unableToConnect:
        return "The adapter finds no vehicle: is it plugged in well, and is the ignition on?";
    case ReplyError::lowVoltageReset:
        return "The adapter was reset by a low voltage: look at the battery and at the plug.";
    case ReplyError::canError:
    case ReplyError::busError:
        return "The vehicle's bus does not work as it should (bus error): ignition on, plug in well?";
    default:
        return "No control unit has answered: is the ignition on?";
    }
}

} // namespace

/// A part of the report: what it is called, and what asks for it once the parts before it are read.
struct ReportPlan::Stage {
    const char* topic;
    void (ReportPlan::*ask)();
    bool isInQuick;
};

const std::vector<ReportPlan::Stage>& ReportPlan::stages()
{
    static const std::vector<Stage> all = {
        {"Setting up the adapter", &ReportPlan::setUp, true},
        {"Connecting to the vehicle", &ReportPlan::connect, true},
        {"Clearing", &ReportPlan::clear, true},
        {"Readiness", &ReportPlan::readStatus, true},
        {"Trouble codes", &ReportPlan::readCodes, true},
        {"Freeze frame", &ReportPlan::findFreezeFrame, true},
        {"Freeze frame", &ReportPlan::listFreezeFrame, true},
        {"Freeze frame", &ReportPlan::readFreezeFrame, true},
        {"Vehicle information", &ReportPlan::listInformation, false},
        {"Vehicle information", &ReportPlan::readInformation, false},
        {"Live values", &ReportPlan::readValues, false},
        {"Test results", &ReportPlan::listTests, false},
        {"Test results", &ReportPlan::readTests, false},
        {"Oxygen sensor tests", &ReportPlan::listOxygenTests, false},
        {"Oxygen sensor tests", &ReportPlan::readOxygenTests, false},
    };
    return all;
}

ReportPlan::ReportPlan(Scope scope) : clearing_(scope.clearsFirst ? Clearing::notSent : Clearing::notAsked)
{
    facts_.isQuick = scope.isQuick;
}

std::optional<std::string> ReportPlan::next()
{
    while (failure_.empty() && pending_.empty() && stage_ < stages().size()) {
        const Stage& stage = stages()[stage_++];
        if (stage.isInQuick || !facts_.isQuick)
            (this->*stage.ask)();
    }
    if (!failure_.empty() || pending_.empty()) {
        facts_.isWhole = failure_.empty();
        return std::nullopt;
    }
    waitAsUsual();
    current_ = std::move(pending_.front());
    pending_.pop_front();
    if (current_.command == clearingCommand)
        clearing_ = Clearing::unknown;
    return current_.command;
}

void ReportPlan::takeName(std::string_view answer) { facts_.adapter = answerText(answer); }

void ReportPlan::take(std::string_view reply)
{
    ++done_;
    if (isAdapterCommand(current_.command))
        takeAdapterAnswer(reply);
    else
        takeVehicleAnswer(reply);
}

std::string_view ReportPlan::topic() const { return stages()[stage_ == 0 ? 0 : stage_ - 1].topic; }

double ReportPlan::progress() const
{
    constexpr std::size_t ofStage = 8; // about
    std::size_t ahead = pending_.size();
    for (std::size_t stage = stage_; stage < stages().size(); ++stage)
        ahead += stages()[stage].isInQuick || !facts_.isQuick ? ofStage : 0;
    return 100.0 * static_cast<double>(done_) / static_cast<double>(std::max<std::size_t>(done_ + ahead, 1));
}

/// Asks in front of all that is pending. What is asked so is not asked again.
void ReportPlan::askFirst(std::initializer_list<const char*> commands)
{
    std::size_t place = 0;
    for (const char* command : commands)
        pending_.insert(pending_.begin() + static_cast<std::ptrdiff_t>(place++),
                        Request{.command = command, .isRepeated = true});
}

void ReportPlan::askOnceMore(bool isUnitBusy)
{
    current_.isRepeated = true;
    pending_.push_front(current_);
    if (isUnitBusy)
        waitLongFor(serviceOf(current_.command));
}

/// The adapter stops listening after the time that answers took so far, about 0.2 s at most, and its prompt
/// ends the reply. What a unit has announced may come later: the adapter waits as long as it can, 1.02 s.
/// Each answer takes that long then; so it is for one service alone.
void ReportPlan::waitLongFor(int service)
{
    if (!patientService_)
        askFirst({"ATAT0", "ATSTFF"});
    patientService_ = service;
}

void ReportPlan::waitAsUsual()
{
    const std::string& command = pending_.front().command;
    if (!patientService_ || isAdapterCommand(command) || serviceOf(command) == *patientService_)
        return;
    patientService_.reset();
    askFirst({"ATST32", "ATAT1"});
}

/// Whether the adapter has lost its settings: it says so, or greets in place of an answer.
bool ReportPlan::hasBeenReset(std::string_view reply, const ExchangeReading& reading) const
{
    return reading.error == ReplyError::lowVoltageReset ||
           (reading.units.empty() && !facts_.adapter.empty() && answerText(reply) == facts_.adapter);
}

void ReportPlan::takeAdapterAnswer(std::string_view answer)
{
    const std::string text = answerText(answer);
    const ReplyError error = readExchange(current_.command, answer, facts_.protocol).error;
    if ((error == ReplyError::stopped || error == ReplyError::lowVoltageReset) && !current_.isRepeated) {
        askOnceMore(false);
        if (error == ReplyError::lowVoltageReset)
            setUpAgain();
    } else if (current_.command == "ATWS" && text.empty()) // the gentle reset is not known to all
        pending_.push_front({"ATD"});
    else if (current_.command == "AT@1")
        facts_.device = text;
    else if (current_.command == "ATRV")
        facts_.voltage = text;
    else if (current_.command == "ATDPN" && text.empty()) // an adapter may know its name alone
        pending_.push_front({"ATDP"});
    else if (current_.command == "ATDPN" || current_.command == "ATDP")
        facts_.protocol = protocolIn(text).value_or(BusProtocol::unknown);
}

void ReportPlan::takeVehicleAnswer(std::string_view reply)
{
    const ExchangeReading reading = readExchange(current_.command, reply, facts_.protocol, facts_.units);
    const bool isLast = current_.isRepeated || !wantsRepeat(reading);
    takeUnits(reading, isLast);
    if (!isLast)
        askOnceMore(isAnyoneBusy(reading));
    else
        noteFailures(reading);
    if (hasBeenReset(reply, reading))
        setUpAgain();
    if (isLast && facts_.units.empty())
        failure_ = connectionFailure(reading.error);
    else if (isLast)
        askFurtherList();
}

/// What came whole counts at once; the rest when it is not asked again, unless it was whole before.
void ReportPlan::takeUnits(const ExchangeReading& reading, bool isLast)
{
    for (const auto& [name, unit] : reading.units) {
        if (isWhole(unit))
            current_.answered.insert(name);
        else if (!isLast || current_.answered.contains(name))
            continue;
        if (unit.isIncomplete)
            facts_.shortfalls[current_.command][name] = unit.isBusy ? Shortfall::busy : Shortfall::damaged;
        // A damaged line may name a unit that there is none of.
        if (!unit.isIncomplete || facts_.units.empty() || findReading(facts_.units, name) != nullptr)
            takeUnit(name, unit);
    }
}

void ReportPlan::takeUnit(const std::string& name, const UnitReading& unit)
{
    merge(facts_.unit(name), unit);
    const auto sensorTests = unit.supported.find(0x05);
    if (sensorTests != unit.supported.end())
        sensorTests_[current_.command.substr(4)].insert(sensorTests->second.begin(),
                                                        sensorTests->second.end());
    if (unit.refusal)
        facts_.refusals[current_.command][name] = *unit.refusal;
}

/// What is missing in spite of all that was asked.
void ReportPlan::noteFailures(const ExchangeReading& reading)
{
    const bool isUnanswered = reading.units.empty() && current_.answered.empty();
    if (isUnanswered || isCut(reading.error))
        facts_.failures[current_.command] = reading.error;
    if (!isUnanswered) {
        for (const std::string& name : missingUnits(reading))
            facts_.shortfalls[current_.command][name] = Shortfall::silent;
    }
    const bool isReplyWhole = reading.error == ReplyError::noData || !isUnanswered;
    if (current_.command == clearingCommand && isReplyWhole && !isCut(reading.error))
        clearing_ = Clearing::answered;
}

/// A list of what is supported tells at its end whether there is a further one.
void ReportPlan::askFurtherList()
{
    const int service = serviceOf(current_.command);
    const int further = itemOf(current_.command) + listStep;
    if (itemOf(current_.command) < 0 || further % listStep != 0 || further > 0xE0)
        return;
    if (isAnyoneListing(static_cast<std::uint8_t>(service), further))
        ask(requestText(service, further) + current_.command.substr(4));
}

bool ReportPlan::wantsRepeat(const ExchangeReading& reading) const
{
    if (current_.command == clearingCommand)
        return false;
    const auto isLacking = [](const auto& unit) { return !isWhole(unit.second); };
    return reading.units.empty() || isCut(reading.error) || std::ranges::any_of(reading.units, isLacking) ||
           !missingUnits(reading).empty();
}

/// The units that list the item and have not answered. On CAN all of them answer 03, with a count of 0 when
/// they have no codes.
std::vector<std::string> ReportPlan::missingUnits(const ExchangeReading& reading) const
{
    const auto service = static_cast<std::uint8_t>(serviceOf(current_.command));
    const int item = itemOf(current_.command);
    const bool areAllAsked = current_.command == "03" && isCan(facts_.protocol);
    std::vector<std::string> missing;
    for (const auto& [name, unit] : facts_.units) {
        if ((areAllAsked || unit.supports(service, item)) && findReading(reading.units, name) == nullptr &&
            !current_.answered.contains(name))
            missing.push_back(name);
    }
    return missing;
}

/// What any unit lists, without the lists themselves.
std::vector<std::uint8_t> ReportPlan::supported(std::uint8_t service) const
{
    std::vector<std::uint8_t> all;
    for (const auto& [name, unit] : facts_.units) {
        const auto lists = unit.supported.find(service);
        if (lists != unit.supported.end())
            all.insert(all.end(), lists->second.begin(), lists->second.end());
    }
    std::ranges::sort(all);
    all.erase(std::unique(all.begin(), all.end()), all.end());
    std::erase_if(all, [](std::uint8_t item) { return item % listStep == 0; });
    return all;
}

/// Gently: some adapters drop their wireless connection at a full reset. Each command may be refused.
void ReportPlan::setUp()
{
    for (const char* command : {"ATWS", "ATE0", "ATL0", "ATH1", "ATS0", "ATAL", "ATAT1", "AT@1", "ATRV"})
        ask(command);
}

/// For an adapter that has lost its settings.
void ReportPlan::setUpAgain()
{
    const std::optional<int> service = std::exchange(patientService_, std::nullopt);
    if (service)
        waitLongFor(*service);
    askFirst({"ATE0", "ATL0", "ATH1", "ATS0", "ATAL", "ATAT1"});
}

void ReportPlan::connect()
{
    ask("0100");
    ask("ATDPN"); // which is known once the first request was answered
}

bool ReportPlan::isAnyoneListing(std::uint8_t service, int item) const
{
    return std::ranges::any_of(facts_.units,
                               [&](const auto& unit) { return unit.second.supports(service, item); });
}

void ReportPlan::clear()
{
    if (clearing_ == Clearing::notAsked)
        return;
    ask(std::string(clearingCommand));
    waitLongFor(serviceOf(pending_.back().command)); // since it is not asked again
}

void ReportPlan::readStatus()
{
    for (const int item : {0x01, 0x41}) {
        if (item == 0x01 || isAnyoneListing(0x01, item))
            ask(requestText(0x01, item));
    }
}

void ReportPlan::readCodes()
{
    ask("03");
    ask("07");
    if (isCan(facts_.protocol))
        ask("0A");
}

void ReportPlan::findFreezeFrame() { ask("020200"); }

void ReportPlan::listFreezeFrame()
{
    if (std::ranges::any_of(facts_.units, [](const auto& unit) {
            return unit.second.freezeFrame && !unit.second.freezeFrame->code.empty();
        }))
        ask("020000");
}

void ReportPlan::readFreezeFrame()
{
    for (const std::uint8_t item : supported(0x02)) {
        if (item != 0x02)
            ask(requestText(0x02, item) + "00");
    }
}

void ReportPlan::listInformation() { ask("0900"); }

void ReportPlan::readInformation()
{
    for (const std::uint8_t item : supported(0x09)) {
        const bool isCount = item <= 0x09 && item % 2 == 1; // of the messages that the next one takes
        if (!isCount)
            ask(requestText(0x09, item));
    }
}

void ReportPlan::listTests() { ask("0600"); }

void ReportPlan::readTests()
{
    for (const std::uint8_t item : supported(0x06))
        ask(requestText(0x06, item));
}

/// Mode 05 of the buses before CAN names a sensor by its bit in the parameter that lists them.
std::vector<std::string> ReportPlan::oxygenSensors() const
{
    std::vector<std::string> sensors;
    for (const auto& [name, unit] : facts_.units) {
        for (const std::uint8_t layout : {std::uint8_t{0x13}, std::uint8_t{0x1D}}) {
            const auto present = unit.rawValues.find(layout);
            for (int bit = 1; present != unit.rawValues.end() && !present->second.empty() && bit < 0x100;
                 bit *= 2) {
                if ((present->second.front() & bit) != 0)
                    sensors.push_back(hexText(bit, 2));
            }
        }
    }
    std::ranges::sort(sensors);
    sensors.erase(std::unique(sensors.begin(), sensors.end()), sensors.end());
    return sensors;
}

void ReportPlan::listOxygenTests()
{
    if (isCan(facts_.protocol))
        return; // there mode 06 has them
    for (const std::string& sensor : oxygenSensors())
        ask("0500" + sensor);
}

void ReportPlan::readOxygenTests()
{
    for (const auto& [sensor, tests] : sensorTests_) {
        for (const std::uint8_t test : tests) {
            if (test % listStep != 0)
                ask(requestText(0x05, test) + sensor);
        }
    }
}

void ReportPlan::readValues()
{
    for (const std::uint8_t item : supported(0x01)) {
        const bool isKnown = item == 0x01 || item == 0x02 || item == 0x41;
        if (!isKnown)
            ask(requestText(0x01, item));
    }
}

} // namespace zint
