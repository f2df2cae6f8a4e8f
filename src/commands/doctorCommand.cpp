#include "commands/doctorCommand.h"

#include "commands/commandSession.h"
#include "commands/options.h"
#include "doctor/connectionDoctor.h"
#include "platform/dateText.h"
#include "platform/systemInspector.h"
#include "process/console.h"
#include "shared/programInfo.h"

#include <QCoreApplication>

namespace zint {
namespace {

/// The check and all that it needs.
class DoctorRun {
public:
    explicit DoctorRun(const DoctorOptions& options) : options_(options), session_(options.connection)
    {
        doctor_.onChanged = [this] { watch(); };
    }

    int run()
    {
        const Interruption interruption([this] { session_.gate.run([this] { doctor_.stop(); }); });
        session_.gate.run([this] { begin(); });
        if (doctor_.isRunning())
            QCoreApplication::exec();
        showProgress({});
        session_.gate.run([this] { doctor_.unload(); });
        const Diagnosis& found = doctor_.diagnosis();
        const std::string head = programInfo().productName + " " + programInfo().version() + ", " +
                                 longDateText(clock_.wall()) + "\n";
        const int printed = printOut(options_.json ? diagnosisJson(found) : diagnosisText(found, head));
        return works(found) ? printed : exitStatus::failure;
    }

private:
    void begin()
    {
        const PortNumber port = session_.connection().port;
        std::vector<DetectedPort> detected = session_.ports().detected();
        std::string location = session_.ports().target(port, detected).location;
        doctor_.begin({.port = port,
                       .location = std::move(location),
                       .bitsPerSecond = session_.connection().bitsPerSecond,
                       .detected = std::move(detected)},
                      options_.quick ? ConnectionDoctor::Scope::quick : ConnectionDoctor::Scope::whole);
    }

    void watch()
    {
        if (!doctor_.isRunning())
            QCoreApplication::quit();
        else if (!options_.quiet)
            showProgress(runningText(doctor_.diagnosis()));
    }

    const DoctorOptions& options_;
    CommandSession session_;
    SystemClock clock_;
    SystemInspector inspector_;
    QtTimer timer_{session_.gate};
    std::unique_ptr<SerialPort> port_ = session_.makePort();
    ConnectionDoctor doctor_{{.port = *port_, .timer = timer_, .clock = clock_, .inspector = inspector_}};
};

} // namespace

void DoctorOptions::describe(CLI::App& command)
{
    addConnection(command, connection);
    command.add_flag("--quick", quick, "Look at port and adapter only, not at the vehicle.");
    addChoices(command, "Output", json,
               {{"--text", false, "Print text (the default)."}, {"--json", true, "Print JSON."}});
    addQuiet(command, quiet);
}

int runDoctorCommand(const DoctorOptions& options) { return DoctorRun(options).run(); }

} // namespace zint
