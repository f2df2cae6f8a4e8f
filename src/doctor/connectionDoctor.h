#pragma once

#include "doctor/adapterExam.h"
#include "doctor/adapterTalk.h"
#include "doctor/diagnosis.h"
#include "doctor/judgement.h"
#include "link/commError.h"
#include "link/portDirectory.h"
#include "link/portInspector.h"
#include "link/portLocation.h"
#include "vehicle/unitReading.h"

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zint {

/// Finds out why a connection does not work, or how well it does: from the port over the adapter to the
/// vehicle, one step after the other up to the first that fails.
///
/// It begins with the adapter's name instead of a reset, which makes some adapters drop their radio link. It
/// sends nothing that an adapter stores, and leaves it with its defaults and the echo that it had. Everything
/// runs on one thread.
class ConnectionDoctor {
public:
    enum class Scope {
        quick, ///< up to the adapter
        whole,
    };

    /// What the doctor asks of its surroundings; all of it outlives the doctor.
    struct Surroundings {
        SerialPort& port;
        Timer& timer;
        const Clock& clock;
        const PortInspector& inspector;
    };

    /// What is looked at.
    struct Subject {
        PortNumber port{1};
        std::string location;               ///< what the port stands for, see portLocation(); empty: nothing
        int bitsPerSecond = 38400;          ///< is tried first, unless the location has a speed of its own
        std::vector<DetectedPort> detected; ///< all that the machine has
    };

    explicit ConnectionDoctor(Surroundings surroundings);

    /// Legal while nothing is looked at.
    void begin(Subject subject, Scope scope);

    /// Ends the check; the adapter gets its defaults back before. What was found stays.
    void stop();

    /// The same at once: the window goes away.
    void unload();

    bool isRunning() const { return isRunning_; }

    const Diagnosis& diagnosis() const { return diagnosis_; }

    double progress() const; ///< percent; an estimate

    /// The speed at which the adapter answered, where it is not the one that was chosen.
    std::optional<int> otherSpeed() const;

    std::function<void()> onChanged; ///< called when the diagnosis may have changed, and at its end

private:
    using Take = void (ConnectionDoctor::*)(const TalkAnswer&);

    void lookAtPort();
    void open();
    void failOpening(const CommError& error);
    void tryNextSpeed();
    void probe();
    void takeProbe(const TalkAnswer& answer);
    void takeNoPrompt(const TalkAnswer& answer);
    void takeName(const TalkAnswer& answer);
    void examine();
    void takeExamined(const TalkAnswer& answer);
    void takeSupply(const TalkAnswer& answer);
    void seekVehicle();
    void takeVehicle(const TalkAnswer& answer);
    void takeSetProtocol(const TalkAnswer& answer);
    void takeProtocol(const TalkAnswer& answer);
    void tellUnits(const UnitReadings& units);
    void measureRate();
    void takeRate(const TalkAnswer& answer);
    void leave();
    void end();

    void ask(std::string_view command, std::chrono::milliseconds limit, Take take);
    void askAdapter(std::string_view command, Take take);
    void run(DoctorStep step, std::string text);
    void finish(std::string text, std::vector<Finding> findings = {});
    void fail(Finding finding, std::string text = {});
    void changed() const;

    Surroundings around_;
    AdapterTalk talk_;
    Subject subject_;
    PortLocation location_;
    PortFacts facts_;
    Scope scope_ = Scope::whole;
    Diagnosis diagnosis_;
    DoctorStep step_ = DoctorStep::port; ///< that is looked at
    bool isRunning_ = false;
    bool isLeaving_ = false; ///< all is looked at

    std::vector<int> speeds_; ///< to be tried
    std::size_t speed_ = 0;   ///< the one that is tried
    int tries_ = 0;           ///< of the present request
    std::string lastName_;
    SpeedSearch search_;
    bool hadEcho_ = true;
    std::optional<AdapterExam> exam_; ///< since something has answered

    VehicleEvidence evidence_;
    std::string firstReply_; ///< of the vehicle
    std::string_view rateRequest_;
    Clock::Time rateBegan_{0};
    int requests_ = 0;
    std::deque<std::string_view> toRestore_; ///< commands that leave the adapter as it was found
};

} // namespace zint
