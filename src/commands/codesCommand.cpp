#include "commands/codesCommand.h"

#include "codes/codesExchange.h"
#include "codes/codesReport.h"
#include "commands/commandSession.h"
#include "commands/options.h"
#include "dtcdb/descriptionSource.h"
#include "process/console.h"

#include <QCoreApplication>

namespace zint {
namespace {

/// The exchange and all that it needs.
class CodesRun {
public:
    explicit CodesRun(const CodesOptions& options)
        : options_(options),
          session_(options.connection, options.timeout, "the exchange was not complete after ")
    {
        exchange_.onChanged = [this] { quitWhenDone(); };
    }

    int run()
    {
        const Interruption interruption([this] { session_.gate.run([this] { interrupt(); }); });
        session_.tellConnection();
        session_.gate.run([this] { begin(); });
        if (exchange_.isRunning())
            QCoreApplication::exec();
        session_.gate.run([this] { exchange_.unload(); });
        return exchange_.succeeded() ? report() : tellFailure();
    }

private:
    void begin()
    {
        session_.patience.begin();
        if (options_.clear)
            exchange_.pressClearCodes();
        else
            exchange_.pressGetCodes();
    }

    void quitWhenDone()
    {
        if (!exchange_.isRunning())
            QCoreApplication::quit();
    }

    void interrupt()
    {
        session_.prompts.message("the exchange was ended before it was complete");
        QCoreApplication::quit();
    }

    int report()
    {
        std::string warning;
        for (const std::string& line : exchange_.reading().canWarning)
            warning += line + "\n";
        if (!warning.empty())
            printBold(warning + "\n");
        const int printed = printOut(codesReport(exchange_.reading()));
        if (exchange_.lacksDescriptions())
            complain(noDatabaseText(session_.values.parmDTCdb));
        if (options_.clear)
            tellClear();
        return session_.prompts.hasComplained ? exitStatus::failure : printed;
    }

    void tellClear()
    {
        const CodesReading& reading = exchange_.reading();
        if (!exchange_.hasSentClear())
            complain("nothing to clear: no codes are reported, so that no clear was sent");
        if (reading.reportedCodes > 0)
            session_.prompts.message(
                "the clear was sent, but codes are still stored: the vehicle has refused it, or "
                "they came back at once. Switch the ignition on and the engine off, then "
                "try again.");
        else if (reading.isLit)
            session_.prompts.message("the light is still on");
    }

    int tellFailure()
    {
        if (!session_.prompts.hasComplained)
            complain(exchange_.lastFailure());
        if (exchange_.hasSentClear())
            complain("the clear was sent; whether the vehicle has obeyed is not known");
        return exitStatus::failure;
    }

    const CodesOptions& options_;
    VehicleSession session_;
    DtcDescriptionSource descriptions_{session_.values.parmDTCdb, session_.values.descriptionsFile};
    CodesExchange exchange_{{.line = session_.line(),
                             .clock = session_.clock,
                             .descriptions = descriptions_,
                             .prompts = session_.prompts,
                             .values = session_.values}};
};

} // namespace

void CodesOptions::describe(CLI::App& command)
{
    addConnection(command, connection);
    command.add_flag("--clear", clear, "Erase the codes and test results in the vehicle.");
    command.add_flag("--yes", isConfirmed, "With --clear: confirm that data in the vehicle be erased.");
    addTimeout(command, timeout, "Give up after so many seconds (default 120; 0 waits for ever).");
}

void CodesOptions::check() const
{
    if (clear && !isConfirmed)
        throw UsageError(
            "--clear erases all diagnostic data in the vehicle; add --yes if that is what you want");
}

int runCodesCommand(const CodesOptions& options) { return CodesRun(options).run(); }

} // namespace zint
