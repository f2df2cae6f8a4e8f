#include "doctor/connectionDoctor.h"
#include "sim/simulatedPort.h"
#include "support/manualTime.h"
#include "support/simulated.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>

namespace zint {
namespace {

using namespace std::chrono_literals;

/// A timer that ticks when the clock has come that far.
struct DueTimer final : Timer {
    explicit DueTimer(ManualClock& theClock) : clock(theClock) {}

    void setInterval(std::chrono::milliseconds time) override
    {
        interval = time;
        setEnabled(due.has_value());
    }
    void setEnabled(bool on) override { due = on ? std::optional(clock.now + interval) : std::nullopt; }
    bool enabled() const override { return due.has_value(); }

    ManualClock& clock;
    std::chrono::milliseconds interval{0};
    std::optional<Clock::Time> due;
};

/// What another device, or an adapter with habits of its own, answers to a line at a speed.
using Device = std::function<std::string(const std::string& line, int bitsPerSecond)>;

/// A port whose device follows a function, or the simulated adapter, or which does not open.
struct DoctorPort final : SimulatedPort {
    using SimulatedPort::SimulatedPort;

    void open(PortNumber number, int bitsPerSecond) override
    {
        if (openError)
            throw CommError(*openError);
        speed = bitsPerSecond;
        SimulatedPort::open(number, bitsPerSecond);
    }
    void output(std::string_view text) override
    {
        written.emplace_back(text);
        if (!device) {
            SimulatedPort::output(text);
            return;
        }
        answer = device(std::string(text.substr(0, text.find('\r'))), speed);
        reply->setInterval(5ms);
        reply->setEnabled(!answer.empty());
    }
    std::string input() override { return device ? std::exchange(answer, {}) : SimulatedPort::input(); }

    std::optional<CommError> openError;
    Device device;
    DueTimer* reply = nullptr; ///< of the device
    int speed = 0;
    std::string answer;
    std::vector<std::string> written;
};

/// What stands around the doctor in a case. As made, an adapter on a healthy port.
struct DoctorScene {
    std::string simulation; ///< options of the simulated adapter, with semicolons between them
    std::string location = "/dev/ttyUSB0";
    PortFacts facts = {};
    OpenTrouble trouble = OpenTrouble::unknown;
    std::vector<std::string> holders = {};
    Device device = {};
    std::vector<DetectedPort> detected = {};
    bool opens = true;
};

struct SceneInspector final : PortInspector {
    explicit SceneInspector(const DoctorScene& theScene) : scene(theScene) {}

    PortFacts facts(const std::string& location) const override
    {
        PortFacts facts = scene.facts;
        facts.path = location;
        return facts;
    }
    std::vector<std::string> holders(const std::string& /*location*/) const override { return scene.holders; }
    OpenTrouble troubleOf(int /*number*/) const override { return scene.trouble; }

    const DoctorScene& scene;
};

/// The doctor in a scene, and its time.
struct DoctorRig {
    explicit DoctorRig(DoctorScene given)
        : scene(std::move(given)),
          options(simulated("protocol=can;" + scene.simulation, SimulationOptions::realistic(), ';')),
          vehicle(options.vehicle), port(portTimer, clock, vehicle, options.adapter)
    {
        port.reply = &reply;
        port.device = scene.device;
        if (!scene.opens)
            port.openError.emplace(1, "The system's text");
        reply.onTick = [this] {
            reply.setEnabled(false);
            port.onNotice(PortNotice::received);
        };
    }

    void begin(ConnectionDoctor::Scope scope = ConnectionDoctor::Scope::whole)
    {
        doctor.begin({.location = scene.location, .bitsPerSecond = 9600, .detected = scene.detected}, scope);
    }

    /// Lets the timer tick that is due first. @return whether there was one
    bool step()
    {
        DueTimer* next = nullptr;
        for (DueTimer* timer : {&portTimer, &reply, &timer_})
            next = timer->due && (next == nullptr || *timer->due < *next->due) ? timer : next;
        if (next == nullptr)
            return false;
        clock.now = std::max(clock.now, *next->due);
        next->due = clock.now + next->interval;
        next->onTick();
        return true;
    }

    const Diagnosis& play()
    {
        for (int ticks = 0; doctor.isRunning() && ticks < 100000 && step(); ++ticks) {
        }
        EXPECT_FALSE(doctor.isRunning()) << "it waits for something that never comes";
        EXPECT_FALSE(port.isOpen());
        return doctor.diagnosis();
    }

    /// What a terminal sees that asks the vehicle after the check.
    std::string answerAfterwards(int bitsPerSecond)
    {
        std::string heard;
        port.open(PortNumber{1}, bitsPerSecond);
        port.onNotice = [&](PortNotice) { heard += port.input(); };
        port.output("0100\r");
        while (step()) {
        }
        return heard;
    }

    DoctorScene scene;
    SimulationOptions options;
    ManualClock clock;
    DueTimer portTimer{clock}, reply{clock}, timer_{clock};
    Vehicle vehicle;
    DoctorPort port;
    SceneInspector inspector{scene};
    ConnectionDoctor doctor{{port, timer_, clock, inspector}};
};

/// An adapter that answers some commands in its own way, and OK to all others.
Device adapterWith(std::map<std::string, std::string> answers)
{
    answers.try_emplace("ATI", "ELM327 v2.1");
    answers.try_emplace("ATQQ", "?");
    answers.try_emplace("ATRV", "13.5V");
    return [answers](const std::string& line, int /*speed*/) {
        const auto own = answers.find(line);
        return (own == answers.end() ? "OK" : own->second) + "\r\r>";
    };
}

/// Sends each answer when the next command comes.
Device oneBehind()
{
    return [device = adapterWith({}), held = std::string()](const std::string& line, int speed) mutable {
        return std::exchange(held, line + "\r" + device(line, speed));
    };
}

const PortFacts missingDevice{.exists = false};
const PortlessDevice cable{.usbIds = "1a86:7523"};
const std::string searchFails = "error=1:UNABLE TO CONNECT";

/// What is to be done first, by its name, or "works".
const std::vector<std::pair<std::string, DoctorScene>> doctorCases = {
    {"works", {}},
    {"works", {.simulation = "units=2;line-speed=9600;mind-speed"}},
    {"works", {.location = "simulated"}},
    {"works", {.simulation = "refuse=H1,S0"}}, // with a remark
    {"works", {.simulation = "refuse=I"}},     // likewise
    {"works", {.simulation = "voltage=0.1V"}}, // likewise: there is a vehicle
    {"works", {.simulation = "error=1:STOPPED"}},
    {"works", {.simulation = "rubbish=\\xFC\\0;after-prompt=\\r\\n;leading-line-end;nul-bytes;pieces=1"}},
    {"nothingConnected", {.location = ""}},
    {"notAssigned", {.location = "", .detected = {{.location = "/dev/ttyUSB1"}}}},
    {"portMissing", {.facts = missingDevice}},
    {"takenByBraille", {.facts = {.exists = false, .brlttyRuns = true, .portless = {cable}}}},
    {"driverMissing", {.facts = {.exists = false, .portless = {cable}}}},
    {hasNumberedPorts ? "partnerAway" : "bluetoothUnbound",
     {.location = "/dev/rfcomm0", .facts = {.exists = false, .isBluetooth = true}}},
    {"notInGroup", {.facts = {.group = "dialout"}, .trouble = OpenTrouble::notAllowed, .opens = false}},
    {"loginNeeded",
     {.facts = {.group = "uucp", .isGroupGranted = true},
      .trouble = OpenTrouble::notAllowed,
      .opens = false}},
    {"ownerOnly", {.trouble = OpenTrouble::notAllowed, .opens = false}},
    {"sandbox",
     {.facts = {.group = "dialout", .isSandboxed = true},
      .trouble = OpenTrouble::notAllowed,
      .opens = false}},
    {"modemManager",
     {.facts = {.age = 3s, .modemManagerRuns = true}, .trouble = OpenTrouble::inUse, .opens = false}},
    {"inUse",
     {.facts = {.age = 60s, .modemManagerRuns = true}, .trouble = OpenTrouble::inUse, .opens = false}},
    {"inUse", {.trouble = OpenTrouble::inUse, .holders = {"minicom (12)"}, .opens = false}},
    {"locked", {.facts = {.lockFile = "/tmp/LCK..x"}, .trouble = OpenTrouble::inUse, .opens = false}},
    {"noSerialPort", {.trouble = OpenTrouble::noSerialPort, .opens = false}},
    {"driverRefusesChip",
     {.detected = {{.location = "/dev/ttyUSB0", .description = "PHASED OUT SINCE 2012"}}, .opens = false}},
    {"partnerAway", {.trouble = OpenTrouble::hostDown, .opens = false}},
    {"partnerRefuses", {.trouble = OpenTrouble::refused, .opens = false}},
    {"networkRefused", {.location = "tcp:192.168.0.10", .trouble = OpenTrouble::refused, .opens = false}},
    {"networkSilent", {.location = "tcp:192.168.0.10", .trouble = OpenTrouble::timedOut, .opens = false}},
    {"networkMute", {.location = "tcp:192.168.0.10", .device = [](auto&&...) { return ""; }}},
    {"openingFailed", {.opens = false}},
    {"wrongAssignment", {.location = "tcp:h:0"}},
    {"noRecording", {.location = "replay:x", .trouble = OpenTrouble::missing, .opens = false}},
    {"wrongSpeed", {.simulation = "line-speed=115200;mind-speed"}},
    {"wrongSpeed", {.simulation = "line-speed=10400;mind-speed;ignition-off"}}, // that comes after
    {"wrongSpeed", {.simulation = "line-speed=9600;mind-speed", .location = "/dev/ttyUSB0@38400"}},
    {"noise", {.simulation = "line-speed=250000;mind-speed"}},
    {"silence", {.device = [](auto&&...) { return ""; }}},
    {"incomingPort",
     {.facts = {.isBluetooth = true, .isIncoming = true}, .device = [](auto&&...) { return ""; }}},
    {"incomingPort", {.facts = {.isIncoming = true}, .trouble = OpenTrouble::hostDown, .opens = false}},
    {"noAdapter", {.device = [](auto&&...) { return "$GPGGA,,,,,,0,,,,,,,,*66\r\n"; }}},
    {"noAdapter", {.device = [](auto&&...) { return "\r\nERROR\r\n"; }}},
    {"oneBehind", {.device = oneBehind()}},
    {"stoppedAnswering", {.simulation = "silent-after=5"}},
    {"lostMeanwhile", {.simulation = "disconnect-after=5"}},
    {"noVoltage", {.simulation = "voltage=0.1V;ignition-off"}},
    {"ignitionOff", {.simulation = "ignition-off"}},
    {"noVehicle", {.simulation = searchFails}},
    {"busInitError", {.simulation = "ignition-off;protocol=iso9141"}},
    {"fixedProtocol", {.device = adapterWith({{"0100", "BUS INIT: ...ERROR"}, {"ATDPN", "3"}})}},
    {"canError", {.simulation = "error=1:CAN ERROR"}},
    {"lowVoltageReset", {.simulation = "error=1:ERR94"}},
    {"lowVoltageReset", {.simulation = "error=1:LV RESET"}},
    {"noData", {.simulation = "error=1:NO DATA;error=2:NO DATA"}},
    {"keepsStopping", {.simulation = "error=1:STOPPED;error=2:STOPPED"}},
    {"bufferFull", {.simulation = "error=1:BUFFER FULL"}},
    {"busError", {.simulation = "error=1:BUS BUSY;error=2:BUS BUSY"}},
    {"requestRefused", {.device = adapterWith({{"0100", "?"}})}},
    {"endlessSearch", {.simulation = "silent-after=16"}},
};

TEST(ConnectionDoctorTest, NamesTheFirstThingToDoAndSendsNothingThatLasts)
{
    for (const auto& [expected, scene] : doctorCases) {
        SCOPED_TRACE(expected + " " + scene.simulation + " " + scene.location);
        DoctorRig rig(scene);
        rig.begin();
        const Diagnosis& found = rig.play();
        const auto first = firstToDo(found);
        EXPECT_EQ(first          ? nameOf(first->what)
                  : works(found) ? "works"
                                 : "",
                  expected)
            << diagnosisText(found, {});
        for (const std::string& text : rig.port.written) {
            for (const char* forbidden : {"ATZ", "ATWS", "ATSP", "ATPP", "ATSD", "AT@3", "ATCV", "ATBRD",
                                          "ATLP", "ST", "VT", "04", "\r"})
                EXPECT_FALSE(text.starts_with(forbidden)) << text;
        }
    }
}

TEST(ConnectionDoctorTest, AWorkingAdapterIsDescribedAndLeftAsItWas)
{
    DoctorRig rig({.simulation = "units=2;refuse=IGN,AL"});
    rig.begin();
    const Diagnosis& found = rig.play();
    EXPECT_LT(rig.clock.now - *found.searchTime, 3s);
    const std::string text = diagnosisText(found, "Zint 1\n");
    for (const char* line :
         {"Port: ok, /dev/ttyUSB0\n", "Answer: ok, at 9600 bits per second",
          "Adapter: attention, ELM327 v1.5 (OBDII to RS232 Interpreter)",
          "Can be set: line feeds, headers, blanks, adaptive timing, waiting time\n",
          "Refuses: ATIGN, ATRD, ATAMC, ATAL\n", "would have: ATIGN, ATRD, ATAL\n",
          "Supply voltage: ok, 13.1 V\n", "Vehicle: ok, ISO 15765-4 (CAN 11/500), found in 0.3 s\n",
          "Control units: ok, 2 answer: 7E8, 7E9\n",
          "\nIt works, with remarks: 20 requests a second, ISO 15765-4, 2 control units.\n"})
        EXPECT_NE(text.find(line), std::string::npos) << line << text;
    const auto json = nlohmann::json::parse(diagnosisJson(found));
    EXPECT_EQ(json["works"], true);
    EXPECT_EQ(json["steps"][3]["findings"][0]["name"], "settingsRefused");
    EXPECT_EQ(rig.answerAfterwards(9600).substr(0, 26), "0100\rSEARCHING...\r41 00 BE");
}

TEST(ConnectionDoctorTest, StopsAtAnyTimeAndQuickEndsWithTheAdapter)
{
    for (int steps = 0; steps < 60; ++steps) {
        DoctorRig rig({.simulation = "line-speed=38400;mind-speed"});
        rig.begin();
        for (int step = 0; step < steps * 4; ++step)
            rig.step();
        rig.doctor.stop();
        const Diagnosis& found = rig.play();
        EXPECT_TRUE(found.isStopped || found.at(DoctorStep::rate).mark == StepMark::ok);
        EXPECT_TRUE(!found.bitsPerSecond ||
                    rig.answerAfterwards(38400).find("\r41 00 ") != std::string::npos);
    }
    DoctorRig rig({});
    rig.begin(ConnectionDoctor::Scope::quick);
    EXPECT_EQ(sentenceOf(rig.play()), "Everything works: ELM327 v1.5 answers.");
    EXPECT_EQ(rig.doctor.otherSpeed(), std::nullopt);
    rig.begin();
    rig.step();
    rig.doctor.unload();
    EXPECT_FALSE(rig.port.isOpen());
}

} // namespace
} // namespace zint
