#include "doctor/connectionDoctor.h"

#include "link/replyBuffer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <utility>

namespace zint {
namespace {

using namespace std::chrono_literals;
using Kind = PortLocation::Kind;

constexpr std::array usualSpeeds = {38400, 9600, 115200, 57600, 230400, 500000, 19200, 10400};

constexpr std::chrono::milliseconds probeLimit = 1s;
constexpr std::chrono::milliseconds networkProbeLimit = 2s;
constexpr std::chrono::milliseconds commandLimit = 2s;
constexpr std::chrono::milliseconds vehicleLimit = 30s; ///< some search for ten seconds and more
constexpr std::chrono::milliseconds rateTime = 1s;
constexpr int mostProbes = 5;   ///< at a speed at which something ends with a prompt
constexpr double slowOnCan = 6; ///< requests a second
constexpr std::chrono::milliseconds shortLatency = 2ms;

constexpr std::string_view nameCommand = "ATI";
constexpr std::string_view firstRequest = "0100";

/// The speeds that are tried, the chosen one first; it alone where the speed makes no difference.
std::vector<int> speedsToTry(int chosen, bool canSearch)
{
    std::vector<int> speeds{chosen};
    for (const int speed : usualSpeeds) {
        if (canSearch && speed != chosen)
            speeds.push_back(speed);
    }
    return speeds;
}

std::string textOf(const DetectedPort& port)
{
    return port.location + (port.description.empty() ? "" : " - " + port.description);
}

std::string speedText(int bitsPerSecond) { return std::to_string(bitsPerSecond) + " bits per second"; }

/// "0.3 s".
std::string secondsOf(std::chrono::milliseconds time)
{
    const auto tenths = (time.count() + 50) / 100;
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " s";
}

std::string placeOf(const PortLocation& location)
{
    switch (location.kind) {
    case Kind::simulated:
        return "the simulated vehicle";
    case Kind::network:
        return location.path + ":" + std::to_string(location.tcpPort) + " in the network";
    case Kind::recording:
        return "the recording " + location.path;
    case Kind::nothing:
    case Kind::device:
        break;
    }
    return location.path;
}

} // namespace

ConnectionDoctor::ConnectionDoctor(Surroundings surroundings)
    : around_(surroundings), talk_(around_.port, around_.timer, around_.clock)
{
    diagnosis_ = emptyDiagnosis({});
}

void ConnectionDoctor::begin(Subject subject, Scope scope)
{
    subject_ = std::move(subject);
    scope_ = scope;
    location_ = portLocation(subject_.location);
    facts_ = location_.kind == Kind::device ? around_.inspector.facts(location_.path) : PortFacts{};
    diagnosis_ =
        emptyDiagnosis(portName(subject_.port) + (subject_.location.empty() ? "" : ", " + subject_.location));
    const int chosen = location_.bitsPerSecond.value_or(subject_.bitsPerSecond);
    speeds_ = speedsToTry(chosen, location_.hasSpeed() && !facts_.isBluetooth);
    speed_ = 0;
    search_ = {.speeds = speeds_.size()};
    exam_.reset();
    evidence_ = {};
    lastName_.clear();
    toRestore_.clear();
    requests_ = tries_ = 0;
    isRunning_ = true;
    isLeaving_ = false;
    lookAtPort();
}

void ConnectionDoctor::lookAtPort()
{
    run(DoctorStep::port, {});
    if (location_.kind == Kind::nothing)
        facts_ = around_.inspector.facts({});
    if (location_.kind != Kind::nothing && facts_.exists && location_.problem.empty()) {
        finish(placeOf(location_) +
               (facts_.path.empty() || facts_.path == location_.path ? "" : ", " + facts_.path));
        open();
        return;
    }
    for (const DetectedPort& port : subject_.detected)
        diagnosis_.at(DoctorStep::port).notes.push_back("Found: " + textOf(port));
    if (!location_.problem.empty())
        fail({Observation::wrongAssignment, location_.problem});
    else
        fail(missingPort(location_, facts_, !subject_.detected.empty()));
    end();
}

void ConnectionDoctor::open()
{
    run(DoctorStep::opening, {});
    changed(); // to open it may take a while
    try {
        talk_.open(subject_.port, speeds_.front());
    } catch (const CommError& error) {
        failOpening(error);
        return;
    }
    finish("it opens");
    run(DoctorStep::answer, {});
    probe();
}

void ConnectionDoctor::failOpening(const CommError& error)
{
    OpenFailure failure{.trouble = around_.inspector.troubleOf(error.number()),
                        .text = error.what(),
                        .location = location_,
                        .facts = facts_};
    if (failure.trouble == OpenTrouble::inUse && location_.kind == Kind::device)
        failure.holders = around_.inspector.holders(location_.path);
    const auto device = std::ranges::find(subject_.detected, facts_.path, &DetectedPort::location);
    if (device != subject_.detected.end())
        failure.description = device->description;
    fail(openingTrouble(failure), error.what());
    end();
}

void ConnectionDoctor::probe()
{
    run(DoctorStep::answer,
        location_.hasSpeed() ? "trying " + speedText(speeds_.at(speed_)) : "asking for the adapter's name");
    ask(nameCommand, location_.kind == Kind::network ? networkProbeLimit : probeLimit,
        &ConnectionDoctor::takeProbe);
}

/// Rubbish of the attempts before may stand in front of the first answer, so that two alike count.
void ConnectionDoctor::takeProbe(const TalkAnswer& answer)
{
    if (answer.isGone) {
        fail({Observation::lostMeanwhile});
        end();
        return;
    }
    if (!answer.isComplete) {
        takeNoPrompt(answer);
        return;
    }
    const bool isReadable = ReplyBuffer::isText(answer.text);
    std::string name = isReadable ? coreOf(nameCommand, answer.text) : "";
    search_.hasNoise = search_.hasNoise || !isReadable;
    if (!name.empty() && name != "STOPPED" && name == lastName_) {
        takeName(answer);
        return;
    }
    lastName_ = std::move(name);
    if (++tries_ < mostProbes)
        probe();
    else
        tryNextSpeed();
}

void ConnectionDoctor::takeNoPrompt(const TalkAnswer& answer)
{
    const bool isReadable = ReplyBuffer::isText(answer.text);
    search_.hasNoise = search_.hasNoise || !isReadable;
    if (std::string text = isReadable ? coreOf(nameCommand, answer.text) : ""; !text.empty())
        search_.text = std::move(text);
    const bool maySleep = speed_ == 0 && tries_++ == 0 && answer.text.empty();
    if (maySleep)
        probe();
    else
        tryNextSpeed();
}

/// A driver that refuses one of the speeds may know the next one.
void ConnectionDoctor::tryNextSpeed()
{
    lastName_.clear();
    tries_ = 0;
    while (++speed_ < speeds_.size()) {
        try {
            talk_.open(subject_.port, speeds_.at(speed_));
        } catch (const CommError&) {
            continue;
        }
        probe();
        return;
    }
    fail(missingAnswer(search_, location_, facts_));
    end();
}

void ConnectionDoctor::takeName(const TalkAnswer& answer)
{
    hadEcho_ = answer.text.find(nameCommand) != std::string::npos;
    diagnosis_.adapter = lastName_ == "?" ? "" : lastName_;
    const int speed = speeds_.at(speed_);
    std::vector<Finding> findings;
    if (speed_ > 0)
        findings.push_back({Observation::wrongSpeed, std::to_string(speed)});
    if (location_.hasSpeed())
        diagnosis_.bitsPerSecond = speed;
    finish((location_.hasSpeed() ? "at " + speedText(speed) : "it answers") + ", in " +
               std::to_string(answer.took.count()) + " ms",
           std::move(findings));
    exam_.emplace(lastName_);
    toRestore_ = {"ATD", hadEcho_ ? "ATE1" : "ATE0"}; // some keep the echo over ATD, some don't
    run(DoctorStep::adapter, "asking what it can do");
    examine();
}

void ConnectionDoctor::examine()
{
    if (const std::string_view command = exam_->next(); !command.empty() && !exam_->isOneBehind()) {
        askAdapter(command, &ConnectionDoctor::takeExamined);
        return;
    }
    DiagnosisStep& step = diagnosis_.at(DoctorStep::adapter);
    step = exam_->step();
    if (exam_->isOneBehind()) {
        step.mark = StepMark::failed;
        leave();
        return;
    }
    finish(step.text, step.findings);
    if (scope_ == Scope::quick) {
        leave();
        return;
    }
    run(DoctorStep::supply, "measuring");
    askAdapter("ATRV", &ConnectionDoctor::takeSupply);
}

void ConnectionDoctor::takeExamined(const TalkAnswer& answer)
{
    exam_->take(answer.text, answer.took);
    examine();
}

void ConnectionDoctor::takeSupply(const TalkAnswer& answer)
{
    const std::string core = coreOf("ATRV", answer.text);
    diagnosis_.volts = evidence_.volts = voltsIn(core);
    std::vector<Finding> findings;
    if (auto finding = supplyTrouble(core))
        findings.push_back(std::move(*finding));
    finish(diagnosis_.volts ? voltsText(*diagnosis_.volts) : core, std::move(findings));
    tries_ = 0;
    seekVehicle();
}

void ConnectionDoctor::seekVehicle()
{
    run(DoctorStep::vehicle, "looking for the vehicle, which may take half a minute");
    ask(firstRequest, vehicleLimit, &ConnectionDoctor::takeVehicle);
}

void ConnectionDoctor::takeVehicle(const TalkAnswer& answer)
{
    if (answer.isGone) {
        fail({Observation::lostMeanwhile});
        end();
        return;
    }
    const ExchangeReading reading = readExchange(firstRequest, answer.text, BusProtocol::unknown);
    evidence_.error = reading.error;
    evidence_.text = coreOf(firstRequest, answer.text);
    evidence_.isInTime = answer.isComplete;
    if (!answer.isComplete) {
        fail(vehicleTrouble(evidence_));
        talk_.interrupt(" ", commandLimit, [this](const TalkAnswer&) { leave(); });
    } else if (!reading.units.empty()) {
        firstReply_ = answer.text;
        diagnosis_.searchTime = answer.took;
        askAdapter("ATDPN", &ConnectionDoctor::takeProtocol);
    } else if (mayPass(reading.error) && tries_++ == 0) {
        seekVehicle();
    } else {
        askAdapter("ATDPN", &ConnectionDoctor::takeSetProtocol);
    }
}

/// The number has an "A" in front where the adapter chooses by itself.
void ConnectionDoctor::takeSetProtocol(const TalkAnswer& answer)
{
    const std::string core = coreOf("ATDPN", answer.text);
    const auto protocol = protocolIn(core);
    if (core.size() == 1 && protocol && *protocol != BusProtocol::unknown)
        evidence_.fixedProtocol = nameOf(*protocol);
    fail(vehicleTrouble(evidence_), evidence_.text);
    leave();
}

void ConnectionDoctor::takeProtocol(const TalkAnswer& answer)
{
    const BusProtocol protocol = protocolIn(coreOf("ATDPN", answer.text)).value_or(BusProtocol::unknown);
    diagnosis_.protocol =
        protocol == BusProtocol::unknown ? "unknown protocol" : std::string(nameOf(protocol));
    finish(diagnosis_.protocol + ", found in " + secondsOf(*diagnosis_.searchTime));
    for (Finding& finding : diagnosis_.at(DoctorStep::supply).findings) {
        if (finding.what == Observation::noVoltage) // there is a vehicle, so the adapter can't measure
            finding.what = Observation::absurdVoltage;
    }
    tellUnits(readExchange(firstRequest, firstReply_, protocol).units);
}

void ConnectionDoctor::tellUnits(const UnitReadings& units)
{
    constexpr std::uint8_t engineSpeed = 0x0C;
    run(DoctorStep::units, {});
    for (const auto& [name, unit] : units)
        diagnosis_.units.push_back(name);
    std::ranges::sort(diagnosis_.units); // which answers first is a matter of chance
    std::string names;
    for (const std::string& name : diagnosis_.units)
        names += (names.empty() ? "" : ", ") + name;
    const bool isShown = !names.starts_with('?');
    finish(std::to_string(units.size()) + (units.size() == 1 ? " answers" : " answer") +
           (isShown ? ": " + names : ""));
    if (!isShown && exam_->canShowHeaders()) {
        DiagnosisStep& step = diagnosis_.at(DoctorStep::adapter);
        step.findings.push_back({Observation::headersNotShown});
        step.mark = StepMark::attention;
    }
    rateRequest_ =
        std::ranges::any_of(units, [](const auto& unit) { return unit.second.supports(1, engineSpeed); })
            ? "010C"
            : firstRequest;
    run(DoctorStep::rate, "counting");
    rateBegan_ = around_.clock.monotonic();
    measureRate();
}

void ConnectionDoctor::measureRate() { askAdapter(rateRequest_, &ConnectionDoctor::takeRate); }

void ConnectionDoctor::takeRate(const TalkAnswer& /*answer*/)
{
    ++requests_;
    const auto elapsed = around_.clock.monotonic() - rateBegan_;
    if (elapsed < rateTime) {
        measureRate();
        return;
    }
    const double rate = requests_ / std::chrono::duration<double>(elapsed).count();
    diagnosis_.requestsPerSecond = rate;
    std::vector<Finding> findings;
    if (diagnosis_.protocol.find("CAN") != std::string::npos && rate < slowOnCan)
        findings.push_back({Observation::slowBus});
    if (facts_.latency.value_or(0ms) > shortLatency)
        diagnosis_.at(DoctorStep::rate)
            .notes.push_back("The adapter's driver holds short answers back for " +
                             std::to_string(facts_.latency->count()) + " ms; 1 ms makes requests faster");
    finish(std::to_string(std::lround(rate)) + " a second", std::move(findings));
    leave();
}

void ConnectionDoctor::leave()
{
    isLeaving_ = true;
    if (toRestore_.empty() || !talk_.isOpen()) {
        end();
        return;
    }
    const std::string_view command = toRestore_.front();
    toRestore_.pop_front();
    talk_.ask(command, commandLimit, [this, command](const TalkAnswer& answer) {
        const std::string core = coreOf(command, answer.text);
        if (command == "ATD" && core == "?")
            toRestore_.insert(toRestore_.begin(), {"ATH0", "ATS1", "ATNL"});
        answer.isComplete ? leave() : end();
    });
    changed();
}

void ConnectionDoctor::end()
{
    talk_.close();
    isRunning_ = false;
    for (DiagnosisStep& step : diagnosis_.steps) {
        if (step.mark == StepMark::waiting && !diagnosis_.isStopped)
            step.mark = StepMark::skipped;
    }
    changed();
}

void ConnectionDoctor::stop()
{
    if (!isRunning_ || isLeaving_ || diagnosis_.isStopped)
        return;
    diagnosis_.isStopped = true;
    DiagnosisStep& step = diagnosis_.at(step_);
    if (step.mark == StepMark::running)
        step = {.step = step_};
    // A blank ends a search, and is nothing else to an adapter.
    if (exam_)
        talk_.interrupt(" ", commandLimit, [this](const TalkAnswer&) { leave(); });
    else
        end();
}

void ConnectionDoctor::unload()
{
    if (!isRunning_)
        return;
    onChanged = {};
    if (exam_ && talk_.isOpen())
        talk_.interrupt(" ATD\r", commandLimit, [](const TalkAnswer&) {});
    end();
}

double ConnectionDoctor::progress() const
{
    const auto done = std::ranges::count_if(diagnosis_.steps, [](const DiagnosisStep& step) {
        return step.mark != StepMark::waiting && step.mark != StepMark::running;
    });
    return 100.0 * static_cast<double>(done) / static_cast<double>(diagnosis_.steps.size());
}

std::optional<int> ConnectionDoctor::otherSpeed() const
{
    return diagnosis_.bitsPerSecond && speed_ > 0 ? diagnosis_.bitsPerSecond : std::nullopt;
}

void ConnectionDoctor::ask(std::string_view command, std::chrono::milliseconds limit, Take take)
{
    talk_.ask(command, limit, [this, take](const TalkAnswer& answer) { (this->*take)(answer); });
    changed();
}

/// The same for what an adapter that answers at all answers at once.
void ConnectionDoctor::askAdapter(std::string_view command, Take take)
{
    talk_.ask(command, commandLimit, [this, command, take](const TalkAnswer& answer) {
        if (answer.isComplete) {
            (this->*take)(answer);
            return;
        }
        fail(answer.isGone ? Finding{Observation::lostMeanwhile}
                           : Finding{Observation::stoppedAnswering, std::string(command)});
        end();
    });
    changed();
}

void ConnectionDoctor::run(DoctorStep step, std::string text)
{
    step_ = step;
    diagnosis_.at(step).mark = StepMark::running;
    diagnosis_.at(step).text = std::move(text);
}

void ConnectionDoctor::finish(std::string text, std::vector<Finding> findings)
{
    DiagnosisStep& step = diagnosis_.at(step_);
    step.mark = findings.empty() ? StepMark::ok : StepMark::attention;
    step.text = std::move(text);
    step.findings = std::move(findings);
}

void ConnectionDoctor::fail(Finding finding, std::string text)
{
    DiagnosisStep& step = diagnosis_.at(step_);
    step.mark = StepMark::failed;
    step.text = std::move(text);
    step.findings.push_back(std::move(finding));
}

void ConnectionDoctor::changed() const
{
    if (onChanged)
        onChanged();
}

} // namespace zint
